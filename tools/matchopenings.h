#pragma once

#include <string>
#include <vector>

#include "core/types.h"

// Where a game of a match begins: a position (FEN, its counters 0 and 1), the initial one if empty, and the
// legal moves that are played from there.
struct Opening {
    std::string Fen;
    std::vector<Move> Moves;
};

// Reads the openings of a file: of every game of a .pgn file the first `plies` plies, of any other file a
// position a line (FEN or EPD; empty lines and those that begin with # are skipped). Throws
// std::runtime_error when something in it is wrong or nothing in it. Uses `board`.
std::vector<Opening> ReadOpenings(const std::string& path, int plies);

// Brings openings into an order that depends on nothing but the seed.
void ShuffleOpenings(std::vector<Opening>& openings, uint32_t seed);
