#pragma once

#include "core/bitboard.h"

// Sets of squares and files as pawns see them. "Ahead" is towards the enemy's back rank.

constexpr Bitboard CENTRE_FILES = FileBits(2) | FileBits(3) | FileBits(4) | FileBits(5);

// The set and everything ahead of it on its files.
template <int side>
constexpr Bitboard FillAhead(Bitboard set) {
    set |= ShiftAhead<side>(set);
    set |= side == WHITE ? set << 16 : set >> 16;
    return set | (side == WHITE ? set << 32 : set >> 32);
}

// What is strictly ahead of a square on its file.
template <int side>
constexpr Bitboard FileAhead(int square) {
    return FillAhead<side>(ShiftAhead<side>(SquareBit(square)));
}

// The same for a side that is known only when the program runs.
constexpr Bitboard FillAhead(int side, Bitboard set) {
    return side == WHITE ? FillAhead<WHITE>(set) : FillAhead<BLACK>(set);
}
constexpr Bitboard FileAhead(int side, int square) {
    return side == WHITE ? FileAhead<WHITE>(square) : FileAhead<BLACK>(square);
}

// The set moved one file towards h and towards a, and both together.
constexpr Bitboard ShiftToH(Bitboard set) {
    return set << 1 & ~FILE_A;
}
constexpr Bitboard ShiftToA(Bitboard set) {
    return set >> 1 & ~FILE_H;
}
constexpr Bitboard Neighbours(Bitboard set) {
    return ShiftToH(set) | ShiftToA(set);
}

// The file and those beside it.
constexpr Bitboard FilesAround(int file) {
    return FileBits(file) | Neighbours(FileBits(file));
}

// What pawns of the side on the set attack.
template <int side>
constexpr Bitboard PawnAttacksOf(Bitboard set) {
    return Neighbours(ShiftAhead<side>(set));
}

// The files that hold a man of the set, bit 0 = a.
constexpr unsigned FilesOf(Bitboard set) {
    set |= set >> 32;
    set |= set >> 16;
    set |= set >> 8;
    return static_cast<unsigned>(set & 0xFF);
}

// All squares of a set of files.
constexpr Bitboard SquaresOfFiles(unsigned files) {
    return FILE_A * files;
}

// The rank of a square as the side counts it, 0 = its own back rank.
constexpr int RelativeRank(int side, int square) {
    return side == WHITE ? RankOf(square) : 7 - RankOf(square);
}
