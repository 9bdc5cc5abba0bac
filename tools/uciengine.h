#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tools/childprocess.h"

// An engine that speaks UCI, as a player of a match.

// How to start it.
struct EngineSetup {
    std::string Program, Directory;
    std::vector<std::pair<std::string, std::string>> Options;  // names and values, sent in this order
    int TimeoutMs = 60'000;                                    // for every answer but a move by the clock
};

// What an engine does wrong. Each costs the game.
enum class Fault { CRASH, SILENCE, FLAG, ILLEGAL_MOVE };
constexpr int FAULT_KINDS = 4;
constexpr const char* FaultNames[FAULT_KINDS] = {"crash", "silence", "flag", "illegal move"};

struct EngineFault : std::runtime_error {
    EngineFault(Fault kind, const std::string& text) : std::runtime_error(text), Kind(kind) {}
    Fault Kind;
};

// Thrown by whatever waits for an engine when IsInterrupted.
struct MatchInterrupted {};

class UciEngine {
  public:
    // The setup must outlive the engine.
    explicit UciEngine(const EngineSetup& setup) : setup_(setup), process_(setup.Program, setup.Directory) {}

    // The following throw EngineFault when the engine dies or is silent for too long.

    // Reads what the engine says of itself.
    void Greet();

    // Of what it said: its name; whether it has an option; whether one of the lines begins like this.
    std::string Name() const;
    bool HasOption(const std::string& name) const { return HasSaid("option name " + name + " type "); }
    bool HasSaid(const std::string& beginning) const;

    // Sets its options and makes it ready for a game; Greet comes before.
    void BeginGame();

    struct Answer {
        std::string Move;
        std::optional<int> Score;  // centipawns from its own view, the last that it has told
        int64_t UsedMs = 0;
    };

    // Has it think about a position ("position ..."), under limits ("go ..."). With a clock it has so long,
    // and its flag falls; without one the setup says when it counts as silent.
    Answer Think(const std::string& position, const std::string& go, std::optional<int64_t> clockMs);

    // Has it quit in peace.
    void Quit();

    // The last lines to it and from it, for a report of a fault.
    std::string LastLines() const;

  private:
    void Ask(const std::vector<std::string>& lines);
    std::string ReadLine(int64_t deadlineMs, Fault late = Fault::SILENCE);
    void ReadUntil(const char* answer);

    const EngineSetup& setup_;
    ChildProcess process_;
    std::vector<std::string> greeting_;
    std::vector<std::string> asked_;   // since the last answer
    std::deque<std::string> answers_;  // the last lines
};
