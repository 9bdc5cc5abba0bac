#pragma once

#include "core/types.h"

// The piece-square tables behind the board's running sums. The evaluation fills them at start-up and when its
// weights change (the sums of a board that stands then are rebuilt by RebuildPsqSums); everybody else reads.

// Centipawns, good for the man's own side. Each must fit with 31 others into 16 bits.
struct PsqEntry {
    int16_t Opening;
    int16_t Ending;
};

constexpr int PSQ_ENTRIES = PIECE_CODES * 2 * 64;
extern PsqEntry PsqTable[PSQ_ENTRIES];

constexpr int PsqIndex(unsigned piece, int side, int square) {
    return (static_cast<int>(piece) * 2 + side) * 64 + square;
}

// Sets the two sums of the board, and those in the records of the game so far, from the tables as they are
// now.
void RebuildPsqSums();
