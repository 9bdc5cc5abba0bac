#pragma once

// Scores are centipawns from the side to move's view; a side mated at ply p scores p - MATE.
constexpr int MATE = 32700;
constexpr int MATE_BOUND = 31000;  // scores beyond it are mates

// Depths are sixtieths of a ply.
constexpr int PLY_DEPTH = 60;
