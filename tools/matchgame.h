#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/matchcourse.h"
#include "tools/uciengine.h"

// One game of a match, with its clocks, its judge and its referee.

// What an engine may use for a move: the clock if it has a base, else the depth if there is one, else nodes.
struct MatchLimits {
    int64_t Nodes = 0;
    int Depth = 0;
    int64_t BaseMs = 0, IncrementMs = 0;
    bool IsJudged = true;  // games that both engines take for decided or drawn end early

    bool HasClock() const { return BaseMs > 0; }
};

struct MatchGame {
    explicit MatchGame(const Opening& opening) : Course(opening) {}

    MatchCourse Course;
    int WhitePoints = 1;          // half points, 0..2
    std::string EndedBy;          // in a word or two: mate, judged, crash
    std::optional<Fault> LostBy;  // of the loser
    std::string FaultReport;      // what has happened, in lines
};

// Plays a game: fresh processes, so that nothing is left of the games before and each can be repeated alone.
// Throws MatchInterrupted.
MatchGame PlayMatchGame(const Opening& opening, const EngineSetup& white, const EngineSetup& black,
                        const MatchLimits& limits);
