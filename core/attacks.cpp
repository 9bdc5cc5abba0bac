#include "core/attacks.h"

#include <cstdlib>

#include "core/bitboard.h"

namespace {

struct Segment {
    int Position, Left, Right;  // the ends are squares of the line, occupied or its edge
};

// The nearest occupied squares of a line on both sides of a position, or its edges.
constexpr Segment FindSegment(unsigned occupancy, int position) {
    Segment segment{position, 0, 7};
    for (int square = 0; square < position; ++square) {
        if (occupancy >> square & 1) segment.Left = square;
    }
    for (int square = 7; square > position; --square) {
        if (occupancy >> square & 1) segment.Right = square;
    }
    return segment;
}

struct SegmentNumbering {
    std::array<uint8_t, 2048> Pattern{};
    std::array<Segment, SEGMENT_PATTERNS> Segments{};
};

// Numbers the segments in the order in which growing occupancy words show them, so the open lines come first.
constexpr SegmentNumbering NumberSegments() {
    SegmentNumbering numbering;
    uint8_t numberOf[8][8][8] = {};  // by position, left and right end; number + 1
    uint8_t count = 0;
    for (unsigned occupancy = 0; occupancy < 256; ++occupancy) {
        for (int position = 0; position < 8; ++position) {
            const Segment segment = FindSegment(occupancy, position);
            uint8_t& number = numberOf[position][segment.Left][segment.Right];
            if (number == 0) {
                numbering.Segments[count] = segment;
                number = ++count;
            }
            numbering.Pattern[occupancy * 8 + position] = number - 1;
        }
    }
    return numbering;
}

constexpr SegmentNumbering Numbering = NumberSegments();

void AddToLines(int pattern, const Segment& segment) {
    for (int square = 0; square < 64; ++square) {
        const int file = FileOf(square), rank = RankOf(square);
        const Bitboard bit = SquareBit(square);
        const auto covers = [&](int position) {
            return position >= segment.Left && position <= segment.Right && position != segment.Position;
        };
        if (covers(file)) RankAttacks[pattern * 8 + rank] |= bit;
        if (covers(rank)) {
            FileAttacks[pattern * 8 + file] |= bit;
            DiagA1H8Attacks[pattern * 16 + file - rank + 7] |= bit;
            DiagA8H1Attacks[pattern * 16 + file + rank] |= bit;
        }
    }
}

// The square one step of (files, ranks) away, or -1 off the board.
int StepFrom(int square, int files, int ranks) {
    const int file = FileOf(square) + files, rank = RankOf(square) + ranks;
    return file >= 0 && file < 8 && rank >= 0 && rank < 8 ? MakeSquare(file, rank) : -1;
}

Bitboard StepBit(int square, int files, int ranks) {
    const int to = StepFrom(square, files, ranks);
    return to < 0 ? 0 : SquareBit(to);
}

void FillStepTargets(int square) {
    for (int files = -2; files <= 2; ++files) {
        for (int ranks = -2; ranks <= 2; ++ranks) {
            const int distance = std::abs(files) + std::abs(ranks);
            if (distance == 3) KnightTargets[square] |= StepBit(square, files, ranks);
            if (distance > 0 && std::abs(files) < 2 && std::abs(ranks) < 2) {
                KingTargets[square] |= StepBit(square, files, ranks);
            }
        }
    }
    for (const int files : {-1, 1}) {
        PawnCaptures[WHITE][square] |= StepBit(square, files, 1);
        PawnCaptures[BLACK][square] |= StepBit(square, files, -1);
    }
}

void FillRays(int square) {
    for (int index = 0; index < 8; ++index) {
        const int step = SquareSteps[index];
        const int files = step == -9 || step == -1 || step == 7 ? -1 : step == -8 || step == 8 ? 0 : 1;
        const int ranks = step < -1 ? -1 : step > 1 ? 1 : 0;
        Bitboard passed = 0;
        for (int to = StepFrom(square, files, ranks); to >= 0; to = StepFrom(to, files, ranks)) {
            Direction[square * 64 + to] = static_cast<int8_t>(step);
            BetweenSquares[square * 64 + to] = passed;
            passed |= SquareBit(to);
        }
        HalfRays[index][square] = passed;
        (IsStraightStep(step) ? StraightRays : DiagonalRays)[square] |= passed;
    }
}

}  // namespace

constexpr std::array<uint8_t, 2048> SegmentPattern = Numbering.Pattern;

Bitboard RankAttacks[SEGMENT_PATTERNS * 8];
Bitboard FileAttacks[SEGMENT_PATTERNS * 8];
Bitboard DiagA1H8Attacks[SEGMENT_PATTERNS * 16];
Bitboard DiagA8H1Attacks[SEGMENT_PATTERNS * 16];
Bitboard KnightTargets[64];
Bitboard KingTargets[64];
Bitboard PawnCaptures[2][64];
Bitboard StraightRays[64];
Bitboard DiagonalRays[64];
Bitboard HalfRays[8][64];
int8_t Direction[64 * 64];
Bitboard BetweenSquares[4096];

int DirectionIndex(int step) {
    constexpr int NONE = -1, LARGEST = 9;
    constexpr int8_t Index[2 * LARGEST + 1] = {0, 1,    2,    NONE, NONE, NONE, NONE, NONE, 3, NONE,
                                               4, NONE, NONE, NONE, NONE, NONE, 5,    6,    7};
    const unsigned slot = static_cast<unsigned>(step + LARGEST);
    if (slot >= std::size(Index) || Index[slot] == NONE) std::abort();
    return Index[slot];
}

void InitAttackTables() {
    for (int pattern = 0; pattern < SEGMENT_PATTERNS; ++pattern) {
        AddToLines(pattern, Numbering.Segments[pattern]);
    }
    for (int square = 0; square < 64; ++square) {
        FillStepTargets(square);
        FillRays(square);
    }
}
