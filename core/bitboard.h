#pragma once

#include <algorithm>
#include <bit>

#include "core/types.h"

constexpr Bitboard FILE_A = 0x0101010101010101u;
constexpr Bitboard FILE_H = FILE_A << 7;
constexpr Bitboard RANK_1 = 0xFF;
constexpr Bitboard RANK_8 = RANK_1 << 56;

constexpr Bitboard LIGHT_SQUARES = 0x55AA55AA55AA55AAu;

constexpr Bitboard RankBits(int rank) {
    return RANK_1 << (8 * rank);
}
constexpr Bitboard FileBits(int file) {
    return FILE_A << file;
}

// The lowest and highest square of a set that is not empty.
constexpr int LowestSquare(Bitboard set) {
    return std::countr_zero(set);
}
constexpr int HighestSquare(Bitboard set) {
    return 63 - std::countl_zero(set);
}
constexpr int CountSquares(Bitboard set) {
    return std::popcount(set);
}

// Takes the lowest square out of a set that is not empty.
constexpr int PopLowest(Bitboard& set) {
    const int square = LowestSquare(set);
    set &= set - 1;
    return square;
}

// Takes the highest square out of a set that is not empty.
constexpr int PopHighest(Bitboard& set) {
    const int square = HighestSquare(set);
    set ^= SquareBit(square);
    return square;
}

// The set moved one rank ahead, as `side` sees it.
template <int side>
constexpr Bitboard ShiftAhead(Bitboard set) {
    return side == WHITE ? set << 8 : set >> 8;
}

// A rank as the side counts it (0 = its own back rank), as a set.
constexpr Bitboard RelativeRankBits(int side, int rank) {
    return RankBits(side == WHITE ? rank : 7 - rank);
}

// The steps that a king needs from square to square on an empty board.
constexpr int Distance(int from, int to) {
    const int files = FileOf(from) - FileOf(to), ranks = RankOf(from) - RankOf(to);
    return std::max(files < 0 ? -files : files, ranks < 0 ? -ranks : ranks);
}
