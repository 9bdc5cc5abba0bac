#include "core/attackquery.h"

#include <gtest/gtest.h>

#include <random>

#include "core/board.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using AttackQueryTest = CoreTest;

// Boards of any number of men of any kind, so that every line is met with every occupancy.
template <typename Visit>
void VisitRandomBoards(int boards, Visit visit) {
    std::mt19937 random(5);
    for (int i = 0; i < boards && !testing::Test::HasFailure(); ++i) {
        ClearBoard();
        const unsigned density = 1 + random() % 12;
        for (int square = 0; square < 64; ++square) {
            if (random() % density != 0) continue;
            constexpr unsigned PIECES[] = {PAWN, KNIGHT, BISHOP, ROOK, QUEEN};
            AddPiece(square, static_cast<int>(random() % 2), PIECES[random() % 5]);
        }
        visit(SlowPosition::FromBoard());
    }
}

TEST_F(AttackQueryTest, AgreesWithWalkingTheBoard) {
    VisitRandomBoards(2000 / WORK_DIVISOR, [](const SlowPosition& position) {
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
        }
    });
    for (const int step : {0, 2, -10, 16}) EXPECT_DEATH(RayAttacks(0, step), "") << step;
}

TEST_F(AttackQueryTest, KnowsAPinnedManByTakingItAway) {
    int pinned = 0;
    VisitPositions(20000 / WORK_DIVISOR, 7, [&] {
        const SlowPosition position = SlowPosition::FromBoard();
        const int us = position.SideToMove, king = position.KingOf(us);
        const Bitboard checkers = position.AttackersOf(us ^ 1, king);
        ASSERT_EQ(IsKingAttacked(us), checkers != 0);
        ASSERT_FALSE(IsPinned(king));
        for (int square = 0; square < 64; ++square) {
            if (!(board.Occupied[us] >> square & 1) || square == king) continue;
            SlowPosition without = position;
            without.Men[square] = {};
            const bool isPinned = without.AttackersOf(us ^ 1, king) != checkers;
            ASSERT_EQ(IsPinned(square), isPinned) << square;
            pinned += isPinned;
        }
    });
    EXPECT_GT(pinned, 100 / WORK_DIVISOR);
}

}  // namespace
