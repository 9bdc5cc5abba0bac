#pragma once

#include <array>

#include "core/board.h"
#include "core/types.h"

// Precomputed attack tables. Sliding attacks are two lookups: the occupancy word of a line and a position on
// it give one of 70 segment patterns, the pattern and the line give the squares. Filled once by
// InitAttackTables.

constexpr int SEGMENT_PATTERNS = 70;

// Pattern number by occupancy word x 8 + position. Words that differ only in the position's own bit, or
// beyond the nearest occupied squares on both sides, have the same pattern. Patterns 0..7 are the open lines.
extern const std::array<uint8_t, 2048> SegmentPattern;

// Squares from the left to the right end of the segment (occupied ends included) without the position itself.
extern Bitboard RankAttacks[SEGMENT_PATTERNS * 8];       // pattern x 8 + rank
extern Bitboard FileAttacks[SEGMENT_PATTERNS * 8];       // pattern x 8 + file
extern Bitboard DiagA1H8Attacks[SEGMENT_PATTERNS * 16];  // pattern x 16 + file - rank + 7
extern Bitboard DiagA8H1Attacks[SEGMENT_PATTERNS * 16];  // pattern x 16 + file + rank

extern Bitboard KnightTargets[64];
extern Bitboard KingTargets[64];
extern Bitboard PawnCaptures[2][64];   // what a pawn of the side on the square attacks
extern Bitboard StraightRays[64];      // the rank and file on an empty board
extern Bitboard DiagonalRays[64];      // the diagonals on an empty board
extern Bitboard HalfRays[8][64];       // by DirectionIndex: repeating one step on an empty board
extern int8_t Direction[64 * 64];      // a x 64 + b: the step that leads from a toward b, 0 without a line
extern Bitboard BetweenSquares[4096];  // a x 64 + b: the squares strictly between, empty without a line

// The square steps in the order of HalfRays.
constexpr int SquareSteps[8] = {-9, -8, -7, -1, 1, 7, 8, 9};

// The row of HalfRays of a square step; a number that is no step aborts the program.
int DirectionIndex(int step);

constexpr bool IsStraightStep(int step) {
    return step == 1 || step == -1 || step == 8 || step == -8;
}

// Fills all tables of this header.
void InitAttackTables();

// Attack sets along one line of the square, with the board's occupancy; occupied ends are included.
inline Bitboard AttacksOnRank(int square) {
    const int file = FileOf(square), rank = RankOf(square);
    return RankAttacks[SegmentPattern[board.RankOccupancy[rank] * 8 + file] * 8 + rank];
}
inline Bitboard AttacksOnFile(int square) {
    const int file = FileOf(square), rank = RankOf(square);
    return FileAttacks[SegmentPattern[board.FileOccupancy[file] * 8 + rank] * 8 + file];
}
inline Bitboard AttacksOnDiagA1H8(int square) {
    const int rank = RankOf(square), line = FileOf(square) - rank + 7;
    return DiagA1H8Attacks[SegmentPattern[board.DiagA1H8Occupancy[line] * 8 + rank] * 16 + line];
}
inline Bitboard AttacksOnDiagA8H1(int square) {
    const int rank = RankOf(square), line = FileOf(square) + rank;
    return DiagA8H1Attacks[SegmentPattern[board.DiagA8H1Occupancy[line] * 8 + rank] * 16 + line];
}

// What a rook or a bishop on the square attacks.
inline Bitboard StraightAttacks(int square) {
    return AttacksOnRank(square) | AttacksOnFile(square);
}
inline Bitboard DiagonalAttacks(int square) {
    return AttacksOnDiagA1H8(square) | AttacksOnDiagA8H1(square);
}
