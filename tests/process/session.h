#pragma once

#include <string>
#include <vector>

#include "tests/process/engine.h"

// Engines of the program under test, as the tests use them.

// A console engine whose start-up output has been read.
class Session : public Engine {
  public:
    Session();
    explicit Session(const std::string& settings);

    // Sends lines and reads up to the answer of a UCI search: the move of "bestmove".
    std::string BestMove(const std::string& lines);
};

// An engine that has been told "uci".
class UciSession : public Session {
  public:
    UciSession() { Ask("uci"); }
};

// The path of the program under test.
extern const char* const ENGINE_PATH;

// What the program prints when it starts with nothing beside it.
std::string StartUpOutput();

// What the program prints behind that for an input that ends, read to the end. Expects exit status 0.
std::string Transcript(const std::string& input);

// Whether one of the lines begins with the prefix.
bool HasLine(const std::vector<std::string>& lines, const std::string& prefix);

// The lines as one text, each ended.
std::string Join(const std::vector<std::string>& lines);
