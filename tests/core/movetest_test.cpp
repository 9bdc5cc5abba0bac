#include "core/movetest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "tests/support/walker.h"

namespace {

using MoveTestTest = CoreTest;

void VisitBoth(int positions, uint64_t seed, const std::function<void()>& visit) {
    VisitPositions(positions / WORK_DIVISOR, seed, visit);
    VisitRandomBoards(positions / WORK_DIVISOR, seed, visit);
}

TEST_F(MoveTestTest, KnowsChecksAndSafetyAsIfTheMoveWereMade) {
    int checks = 0, unsafe = 0;
    VisitBoth(30000, 31, [&] {
        const int us = board.SideToMove;
        const bool isInCheck = IsKingAttacked(us);
        for (const Move move : MovesOf(GenerateMoves)) {
            const bool givesCheck = GivesCheck(move), isSafe = isInCheck || KeepsKingSafe(move);
            MakeMove(move, 1);
            const bool isCheck = IsKingAttacked(us ^ 1), isKingSafe = !IsKingAttacked(us);
            UnmakeMove();
            ASSERT_EQ(givesCheck, isCheck) << TextOf({move});
            ASSERT_TRUE(isInCheck || isSafe == isKingSafe) << TextOf({move});
            checks += isCheck;
            unsafe += !isSafe;
        }
    });
    EXPECT_GT(checks, 10000 / WORK_DIVISOR);
    EXPECT_GT(unsafe, 10000 / WORK_DIVISOR);
}

TEST_F(MoveTestTest, AcceptsExactlyTheWordsOfTheGenerators) {
    std::mt19937 random(32);
    VisitBoth(500, 32, [&] {
        std::vector<Move> moves = MovesOf(GenerateAllStages);
        std::ranges::sort(moves);
        size_t accepted = 0;
        for (Move word = 0; word < 8 << 12; ++word) {
            const unsigned piece = board.PieceOn[MoveFrom(word)], captured = board.PieceOn[MoveTo(word)];
            const Move move = BuildMove(MoveFrom(word), MoveTo(word), piece, captured, word >> 12);
            accepted += IsPossible(move);
        }
        ASSERT_EQ(accepted, moves.size());
        const auto isGenerated = [&](Move word) { return std::ranges::binary_search(moves, word); };
        for (const Move move : moves) {
            ASSERT_TRUE(IsPossible(move)) << TextOf({move});
            for (int bit = 0; bit < 32; ++bit) {
                const Move corrupted = move ^ Move { 1 } << bit;
                ASSERT_EQ(IsPossible(corrupted), isGenerated(corrupted)) << TextOf({move}) << " bit " << bit;
            }
        }
        for (int i = 0; i < 1000; ++i) {
            const Move word = static_cast<Move>(random() >> (i % 2 == 0 ? 11 : 0));
            ASSERT_EQ(IsPossible(word), isGenerated(word)) << word;
        }
    });
}

TEST_F(MoveTestTest, FindsAReplyExactlyWhenOneIsLegal) {
    int mates = 0, replies = 0;
    VisitBoth(60000, 33, [&] {
        if (!IsKingAttacked(board.SideToMove)) return;
        const bool hasReply = !LegalMoves().empty();
        ASSERT_EQ(HasLegalReply(), hasReply);
        ++(hasReply ? replies : mates);
    });
    EXPECT_GT(mates, 100 / WORK_DIVISOR);
    EXPECT_GT(replies, 1000 / WORK_DIVISOR);
    LoadFEN("8/8/7R/3k4/3pP3/6B1/8/K1R1R3 b - e4");
    EXPECT_EQ(TextOf(LegalMoves()), "d4e3");
    EXPECT_TRUE(HasLegalReply());
    // The pawn that is taken shields the king.
    LoadFEN("8/8/7R/3k4/3pP3/6B1/8/K1R1R2B b - e4");
    EXPECT_FALSE(HasLegalReply());
}

}  // namespace
