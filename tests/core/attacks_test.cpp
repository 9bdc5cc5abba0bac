#include "core/attacks.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using AttackTablesTest = CoreTest;

TEST_F(AttackTablesTest, SegmentPatternsTellWhatMattersAndNothingElse) {
    std::set<int> patterns;
    for (int occupancy = 0; occupancy < 256; ++occupancy) {
        for (int position = 0; position < 8; ++position) {
            const int pattern = SegmentPattern[occupancy * 8 + position];
            patterns.insert(pattern);
            if (occupancy == 0) {
                EXPECT_EQ(pattern, position);
            }
            EXPECT_EQ(pattern, SegmentPattern[(occupancy ^ 1 << position) * 8 + position]);
            // Bits beyond the nearest occupied square on either side.
            for (int bit = 0; bit < 8; ++bit) {
                bool isHidden = false;
                for (int between = 1; between < 7; ++between) {
                    const bool isBetween =
                        (bit < between && between < position) || (bit > between && between > position);
                    isHidden = isHidden || (isBetween && (occupancy >> between & 1));
                }
                if (isHidden) {
                    EXPECT_EQ(pattern, SegmentPattern[(occupancy ^ 1 << bit) * 8 + position]);
                }
            }
        }
    }
    EXPECT_EQ(patterns.size(), 70u);
    EXPECT_EQ(*patterns.rbegin(), 69);
}

// A rook's lines through every square with every occupancy word, against walking.
TEST_F(AttackTablesTest, LinesStopAtTheFirstManOfEveryOccupancy) {
    for (int occupancy = 0; occupancy < 256; ++occupancy) {
        for (int line = 0; line < 8; ++line) {
            SlowPosition onRank, onFile, rising, falling;
            for (int i = 0; i < 8; ++i) {
                if (!(occupancy >> i & 1)) continue;
                onRank.Men[line * 8 + i] = onFile.Men[i * 8 + line] = {PAWN, WHITE};
                const int up = i + line - 3, down = line + 3 - i;  // files on rank i
                if (up >= 0 && up < 8) rising.Men[i * 8 + up] = {PAWN, WHITE};
                if (down >= 0 && down < 8) falling.Men[i * 8 + down] = {PAWN, WHITE};
            }
            for (int i = 0; i < 8; ++i) {
                const int pattern = SegmentPattern[occupancy * 8 + i];
                const int up = i + line - 3, down = line + 3 - i;
                ASSERT_EQ(RankAttacks[pattern * 8 + line],
                          onRank.Walk(line * 8 + i, 1, 0) | onRank.Walk(line * 8 + i, -1, 0));
                ASSERT_EQ(FileAttacks[pattern * 8 + line],
                          onFile.Walk(i * 8 + line, 0, 1) | onFile.Walk(i * 8 + line, 0, -1));
                if (up >= 0 && up < 8) {
                    ASSERT_EQ(DiagA1H8Attacks[pattern * 16 + line - 3 + 7],
                              rising.Walk(i * 8 + up, 1, 1) | rising.Walk(i * 8 + up, -1, -1));
                }
                if (down >= 0 && down < 8) {
                    ASSERT_EQ(DiagA8H1Attacks[pattern * 16 + line + 3],
                              falling.Walk(i * 8 + down, -1, 1) | falling.Walk(i * 8 + down, 1, -1));
                }
            }
        }
    }
}

TEST_F(AttackTablesTest, GeometryAgreesWithWalkingAnEmptyBoard) {
    const SlowPosition empty;
    for (int square = 0; square < 64; ++square) {
        EXPECT_EQ(KnightTargets[square], empty.AttacksFrom(square, WHITE, KNIGHT));
        EXPECT_EQ(KingTargets[square], empty.AttacksFrom(square, WHITE, KING));
        EXPECT_EQ(PawnCaptures[WHITE][square], empty.AttacksFrom(square, WHITE, PAWN));
        EXPECT_EQ(PawnCaptures[BLACK][square], empty.AttacksFrom(square, BLACK, PAWN));
        EXPECT_EQ(StraightRays[square], empty.AttacksFrom(square, WHITE, ROOK));
        EXPECT_EQ(DiagonalRays[square], empty.AttacksFrom(square, WHITE, BISHOP));
    }
}

TEST_F(AttackTablesTest, DirectionLeadsFromOneSquareToTheOther) {
    for (int a = 0; a < 64; ++a) {
        for (int b = 0; b < 64; ++b) {
            const int step = Direction[a * 64 + b];
            EXPECT_EQ(Direction[b * 64 + a], -step);
            EXPECT_EQ(BetweenSquares[b * 64 + a], BetweenSquares[a * 64 + b]);
            const int files = std::abs(a % 8 - b % 8), ranks = std::abs(a / 8 - b / 8);
            const bool isLine = a != b && (files == 0 || ranks == 0 || files == ranks);
            ASSERT_EQ(step != 0, isLine) << a << ' ' << b;
            if (!isLine) {
                EXPECT_EQ(BetweenSquares[a * 64 + b], 0u);
                continue;
            }
            Bitboard between = 0;
            int square = a + step;
            for (; square != b && square >= 0 && square < 64; square += step) between |= SquareBit(square);
            ASSERT_EQ(square, b);
            EXPECT_EQ(BetweenSquares[a * 64 + b], between);
            EXPECT_TRUE(HalfRays[DirectionIndex(step)][a] & SquareBit(b));
        }
    }
}

TEST_F(AttackTablesTest, HalfRaysMakeUpTheRays) {
    for (int square = 0; square < 64; ++square) {
        Bitboard straight = 0, diagonal = 0;
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(DirectionIndex(SquareSteps[i]), i);
            (IsStraightStep(SquareSteps[i]) ? straight : diagonal) ^= HalfRays[i][square];
        }
        EXPECT_EQ(straight, StraightRays[square]);
        EXPECT_EQ(diagonal, DiagonalRays[square]);
    }
}

}  // namespace
