#pragma once

#include <string>
#include <vector>

#include "tests/process/engine.h"

// The engine under test, as the tests use it.

// The program that is started: the one built with the tests, or what the environment variable
// KESTROVAN_ENGINE names by its full path.
std::string EnginePath();

// A console engine whose start-up output has been read.
class Session : public Engine {
  public:
    explicit Session(const std::string& settings = "");

    // Sends lines and reads up to the answer of a UCI search: the move of "bestmove".
    std::string BestMove(const std::string& lines);
};

// An engine that has been told "uci".
class UciSession : public Session {
  public:
    UciSession() { Ask("uci"); }
};

// All that the program prints for an input that ends. Expects exit status 0.
std::string WholeOutput(const std::string& input, const std::string& settings = "");

// The same without settings and without what is printed at the start.
std::string Transcript(const std::string& input);

// Whether one of the lines begins with the prefix.
bool HasLine(const std::vector<std::string>& lines, const std::string& prefix);

// The lines as one text, each ended.
std::string Join(const std::vector<std::string>& lines);
