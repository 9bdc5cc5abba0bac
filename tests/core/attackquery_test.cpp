#include "core/attackquery.h"

#include <gtest/gtest.h>

#include "core/attacks.h"
#include "core/board.h"
#include "core/fen.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using AttackQueryTest = CoreTest;

int FilesOf(int step) {
    return (step + 12) % 8 - 4;  // -1, 0 or 1
}
int RanksOf(int step) {
    return (step - FilesOf(step)) / 8;
}

bool MovesAlong(unsigned piece, int step) {
    const bool isStraight = FilesOf(step) == 0 || RanksOf(step) == 0;
    return piece == QUEEN || piece == (isStraight ? ROOK : BISHOP);
}

TEST_F(AttackQueryTest, AgreesWithWalkingTheBoard) {
    VisitPositions(2000 / WORK_DIVISOR, 5, [] {
        const SlowPosition position = SlowPosition::FromBoard();
        for (int square = 0; square < 64; ++square) {
            for (const int side : {WHITE, BLACK}) {
                const Bitboard attackers = position.AttackersOf(side, square);
                ASSERT_EQ(AttackersOf(side, square), attackers) << square;
                ASSERT_EQ(IsSquareAttacked(side, square), attackers != 0) << square;
                for (unsigned piece = 0; piece < PIECE_CODES; ++piece) {
                    ASSERT_EQ(AttacksFrom(square, side, piece), position.AttacksFrom(square, side, piece))
                        << square << " piece " << piece;
                }
            }
            for (const int step : SquareSteps) {
                ASSERT_EQ(RayAttacks(square, step), position.Walk(square, FilesOf(step), RanksOf(step)))
                    << square << " step " << step;
            }
        }
        ASSERT_EQ(IsKingAttacked(board.SideToMove), position.IsInCheck());
    });
}

TEST_F(AttackQueryTest, FindsTheSliderBehind) {
    int found = 0;
    VisitPositions(1000 / WORK_DIVISOR, 6, [&] {
        const SlowPosition position = SlowPosition::FromBoard();
        for (int target = 0; target < 64; ++target) {
            for (int square = 0; square < 64; ++square) {
                const int step = Direction[target * 64 + square];
                if (step == 0) continue;
                Bitboard expected = 0;
                for (int from = 0; from < 64; ++from) {
                    const bool isFirst = position.Walk(square, FilesOf(step), RanksOf(step)) >> from & 1;
                    if (isFirst && MovesAlong(position.Men[from].Piece, step)) expected = SquareBit(from);
                }
                ASSERT_EQ(XrayRay(target, square), expected) << target << " behind " << square;
                found += expected != 0;
            }
        }
    });
    EXPECT_GT(found, 1000);
}

TEST_F(AttackQueryTest, KnowsAPinnedManByTakingItAway) {
    int pinned = 0;
    VisitPositions(20000 / WORK_DIVISOR, 7, [&] {
        const SlowPosition position = SlowPosition::FromBoard();
        const int us = position.SideToMove, king = position.KingOf(us);
        const Bitboard checkers = position.AttackersOf(us ^ 1, king);
        for (int square = 0; square < 64; ++square) {
            if (position.IsEmpty(square) || position.Men[square].Side != us || square == king) continue;
            SlowPosition without = position;
            without.Men[square] = {};
            const bool isPinned = without.AttackersOf(us ^ 1, king) != checkers;
            ASSERT_EQ(IsPinned(square), isPinned) << square;
            pinned += isPinned;
        }
        ASSERT_FALSE(IsPinned(king));
    });
    EXPECT_GT(pinned, 100 / WORK_DIVISOR);
}

TEST_F(AttackQueryTest, RefusesStepsThatAreNone) {
    for (const int step : {0, 2, -10, 16}) EXPECT_DEATH(RayAttacks(0, step), "") << step;
}

}  // namespace
