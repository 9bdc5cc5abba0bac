#pragma once

#include "core/types.h"

// Zobrist keys. Filled once by InitHashKeys and the same in every run and on every machine: book and learning
// files depend on them.

extern uint64_t PieceKeys[2][PIECE_CODES][64];  // rows 0 and 4 stay zero
extern uint64_t CastleKeys[16];                 // by CastlingFlags
extern uint64_t EnPassantKeys[8];               // by file

// The generator behind all keys: a linear congruential one, written out so that files with keys don't depend
// on the C library in use.
struct KeyGenerator {
    uint32_t State = 1;

    // The next draw: 15 bits.
    constexpr uint32_t Draw() {
        State = State * 214013u + 2531011u;
        return (State >> 16) & 0x7FFF;
    }
};

// The key that marks an entry of a hash table as empty.
constexpr uint64_t EMPTY_KEY = 1234567;

// Fills the three tables from the start of the generator.
void InitHashKeys();

// The next key of the generator that InitHashKeys starts: bit i is the low bit of its (i+1)-th draw.
uint64_t RandomKey64();

// The key of the current position: its men, castling rights and the file on which a pawn of the side to move
// stands beside a pawn that has just made a double step. The side to move is not in it.
uint64_t PositionKey();

// What `board.HashKey` and PositionKey are after a pseudo-legal move.
uint64_t HashKeyAfter(Move move);
uint64_t PositionKeyAfter(Move move);
