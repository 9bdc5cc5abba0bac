#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Labelled positions out of games, to fit weights to what happens where the program itself goes.

struct SamplingOptions {
    int Skip = 8;  // plies at the beginning that are opening, and not the players' doing
    int Last = 2;  // plies at the end that are left out, too
    int Each = 6;  // one position of so many, by chance
    uint64_t Seed = 1;
};

struct SamplingReport {
    int64_t Games = 0, Broken = 0, WithoutResult = 0, Positions = 0;
};

// Calls `take` with a line for each position taken out of a file of games (PGN): its four fields, the result
// and the number of the game. Positions in check are left out. Throws std::runtime_error when the file can't
// be read.
void SampleGames(const std::string& path, const SamplingOptions& options, SamplingReport& report,
                 const std::function<void(const std::string& line)>& take);
