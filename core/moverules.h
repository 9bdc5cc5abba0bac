#pragma once

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"

// Rules that the generators share with the tests of single moves. They read `board` and change nothing.

// What a pawn's step adds to its square.
constexpr int PawnStep(int side) {
    return side == WHITE ? 8 : -8;
}

// Where the side's king castles from.
constexpr int KingHome(int side) {
    return side == WHITE ? E1 : E8;
}

// The empty squares that the pawns reach by one step, the last rank included, and by two.
template <int side>
constexpr Bitboard SingleSteps(Bitboard pawns, Bitboard empty) {
    return ShiftAhead<side>(pawns) & empty;
}
template <int side>
constexpr Bitboard DoubleSteps(Bitboard pawns, Bitboard empty) {
    return SingleSteps<side>(SingleSteps<side>(pawns & RelativeRankBits(side, 1), empty), empty);
}

// Whether the side may castle short (step 1) or long (step -1): the right is there, the squares between king
// and rook are empty, and no opponent attacks the two that the king crosses. The king's own square is
// deliberately not tested.
template <int side, int step>
bool IsCastlingOpen() {
    constexpr int HOME = KingHome(side);
    constexpr unsigned RIGHT = step > 0 ? ShortRight(side) : LongRight(side);
    constexpr Bitboard KING_PATH = SquareBit(HOME + step) | SquareBit(HOME + 2 * step);
    constexpr Bitboard PATH = step > 0 ? KING_PATH : KING_PATH | SquareBit(HOME - 3);
    return (board.CastlingFlags & RIGHT) && !(AllOccupied() & PATH) &&
           !IsSquareAttacked(ChangeSide(side), HOME + step) &&
           !IsSquareAttacked(ChangeSide(side), HOME + 2 * step);
}
