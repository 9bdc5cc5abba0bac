#pragma once

#include <string>

#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/types.h"
#include "egtb/tableclass.h"

// A position of few men as tables see it, apart from the board of the game: whoever makes tables looks at
// millions of them, in several threads.

constexpr Bitboard PAWN_RANKS = ~(RANK_1 | RANK_8);

// The squares to the left and to the right of those of a set.
constexpr Bitboard Beside(Bitboard set) {
    return (set & ~FILE_A) >> 1 | (set & ~FILE_H) << 1;
}

struct TablePosition {
    Bitboard Men[2][PIECE_CODES] = {};  // kings included; one king for each side
    int SideToMove = WHITE;
    int DoubleStep = -1;  // the square of an opponent's pawn that has just made a double step, or -1

    int King(int side) const { return LowestSquare(Men[side][KING]); }
};

inline Bitboard OccupiedBy(const TablePosition& position, int side) {
    const Bitboard* men = position.Men[side];
    return men[KING] | men[QUEEN] | men[ROOK] | men[BISHOP] | men[KNIGHT] | men[PAWN];
}

inline Bitboard AllOccupied(const TablePosition& position) {
    return OccupiedBy(position, WHITE) | OccupiedBy(position, BLACK);
}

// The men of a side, its king apart; what has more than three men of a kind has no code and gives one that is
// no class's.
MenCode MenOf(const TablePosition& position, int side);

// The same position with the sides changed and the board turned round rank by rank.
TablePosition ChangeSides(const TablePosition& position);

// The side to move whose table has the position of a class, after changing the sides of a position that the
// class doesn't tell apart, or that has the men of the class the other way round.
int TableSide(const TableClass& tableClass, bool isReversed, TablePosition* position);

// What a man other than a pawn attacks on a board occupied in this way, occupied squares included.
Bitboard TableAttacks(unsigned piece, int square, Bitboard occupied);

// Whether a man of the side attacks the square.
bool IsAttacked(const TablePosition& position, int square, int bySide, Bitboard occupied);

// The squares from which a pawn of the side to move could take the pawn that has made a double step.
Bitboard EnPassantCapturers(const TablePosition& position);

// Whether the game could have come to the position as far as it can be seen: no square is taken twice, no
// pawn stands on an outer rank, the opponent's king is not attacked, a double step has left two empty squares
// behind itself.
bool IsPlayable(const TablePosition& position);

// The position in the usual notation, with counters as at the start of a game.
std::string FenOf(const TablePosition& position);

// Mirror images of a set of squares.
constexpr Bitboard FlipRanks(Bitboard set) {
    set = (set >> 8 & 0x00FF00FF00FF00FFu) | (set & 0x00FF00FF00FF00FFu) << 8;
    set = (set >> 16 & 0x0000FFFF0000FFFFu) | (set & 0x0000FFFF0000FFFFu) << 16;
    return set >> 32 | set << 32;
}
constexpr Bitboard FlipFiles(Bitboard set) {
    set = (set >> 1 & 0x5555555555555555u) | (set & 0x5555555555555555u) << 1;
    set = (set >> 2 & 0x3333333333333333u) | (set & 0x3333333333333333u) << 2;
    return (set >> 4 & 0x0F0F0F0F0F0F0F0Fu) | (set & 0x0F0F0F0F0F0F0F0Fu) << 4;
}
// On the diagonal from a1 to h8.
constexpr Bitboard FlipDiagonal(Bitboard set) {
    Bitboard moved = (set ^ set << 28) & 0x0F0F0F0F00000000u;
    set ^= moved ^ moved >> 28;
    moved = (set ^ set << 14) & 0x3333000033330000u;
    set ^= moved ^ moved >> 14;
    moved = (set ^ set << 7) & 0x5500550055005500u;
    return set ^ moved ^ moved >> 7;
}
constexpr int FlipDiagonal(int square) {
    return MakeSquare(RankOf(square), FileOf(square));
}
