#pragma once

#include <array>

#include "core/types.h"

// A second telling of how men move and attack, for the tests to compare with: an array of men and walks over
// it, sharing nothing with the program but the codes of men and moves.

struct SlowPosition {
    struct Man {
        unsigned Piece = EMPTY;
        int Side = WHITE;
        bool operator==(const Man&) const = default;
    };

    std::array<Man, 64> Men{};
    int SideToMove = WHITE;
    unsigned Castling = 0;
    unsigned Fifty = 0;

    // The men, side and rights of `board`.
    static SlowPosition FromBoard();

    // Where the king of the side stands, 64 for none.
    int KingOf(int side) const;

    // The squares of a walk of at most `steps` steps of (files, ranks) up to the first man, included.
    Bitboard Walk(int square, int files, int ranks, int steps = 7) const;

    // What a man would attack from the square.
    Bitboard AttacksFrom(int square, int side, unsigned piece) const;

    // The men of a side that attack the square.
    Bitboard AttackersOf(int side, int square) const;

    void Play(Move move);
};
