#include "core/movetest.h"

#include <algorithm>
#include <random>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/checks.h"
#include "core/exchange.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movescore.h"
#include "tests/support/walker.h"

namespace {

using MoveTestTest = CoreTest;

void VisitBoth(int positions, uint64_t seed, const std::function<void()>& visit) {
    VisitPositions(positions / WORK_DIVISOR, seed, visit);
    VisitRandomBoards(positions / WORK_DIVISOR, seed, visit);
}

std::vector<Move> QuietChecks(int selector) {
    std::vector<Move> moves = MovesOf([=] {
        EXPECT_EQ(GenerateQuietChecks(selector), MoveListTop);
        for (int i = 0; i < MoveListTop; ++i) {
            EXPECT_EQ(MoveList[i].Score, HistoryCounter(MoveList[i].Move, selector, board.SideToMove));
        }
    });
    std::ranges::sort(moves);
    return moves;
}

TEST_F(MoveTestTest, KnowsChecksAndSafetyAsIfTheMoveWereMade) {
    int unsafe = 0, poor = 0, discovered = 0, castling = 0;
    std::mt19937 random(30);
    for (auto& table : HistoryCounters) {
        for (int32_t& counter : table) counter = static_cast<int32_t>(random() % 32700);
    }
    VisitBoth(30000, 31, [&] {
        const int us = board.SideToMove;
        const bool isInCheck = IsKingAttacked(us);
        const std::vector<Move> quiet = MovesOf([] { GenerateQuiet(0); });
        std::vector<Move> checks;
        for (const Move move : MovesOf(GenerateAllStages)) {
            const bool givesCheck = GivesCheck(move), isSafe = KeepsKingSafe(move), isGood = IsSafeMove(move);
            MakeMove(move, 1);
            const Bitboard checkers = AttackersOf(us, static_cast<int>(board.KingSquare[us ^ 1]));
            const bool isKingSafe = !IsKingAttacked(us);
            UnmakeMove();
            ASSERT_EQ(givesCheck, checkers != 0) << TextOf({move});
            ASSERT_TRUE(isInCheck || isSafe == isKingSafe) << TextOf({move});
            unsafe += !isInCheck && !isSafe;
            if (!givesCheck || std::ranges::count(quiet, move) == 0) continue;
            const bool isDiscovered = (checkers & ~SquareBit(MoveTo(move))) != 0 && !IsCastling(move);
            if (isGood || isDiscovered) checks.push_back(move);
            poor += !isGood && !isDiscovered;
            discovered += isDiscovered;
            castling += IsCastling(move);
        }
        std::ranges::sort(checks);
        for (const int selector : {0, 1}) ASSERT_EQ(TextOf(QuietChecks(selector)), TextOf(checks));
    });
    for (const int met : {unsafe, poor, discovered}) EXPECT_GT(met, 1000 / WORK_DIVISOR);
    EXPECT_GT(castling, 20 / WORK_DIVISOR);
    ClearHistoryCounters();
}

TEST_F(MoveTestTest, AcceptsExactlyTheWordsOfTheGenerators) {
    VisitBoth(500, 32, [] {
        std::vector<Move> moves = MovesOf(GenerateAllStages);
        std::ranges::sort(moves);
        size_t accepted = 0;
        for (Move word = 0; word < 8 << 12; ++word) {
            const unsigned piece = board.PieceOn[MoveFrom(word)], captured = board.PieceOn[MoveTo(word)];
            accepted += IsPossible(BuildMove(MoveFrom(word), MoveTo(word), piece, captured, word >> 12));
        }
        ASSERT_EQ(accepted, moves.size());
        const std::vector<Move> legal = LegalMoves();
        for (const Move move : moves) {
            ASSERT_TRUE(IsPossible(move)) << TextOf({move});
            ASSERT_EQ(IsLegalMove(move), std::ranges::count(legal, move) == 1) << TextOf({move});
            for (int bit = 0; bit < 32; ++bit) {
                const Move corrupted = move ^ Move { 1 } << bit;
                ASSERT_EQ(IsPossible(corrupted), std::ranges::binary_search(moves, corrupted)) << corrupted;
            }
        }
    });
}

TEST_F(MoveTestTest, FindsAReplyExactlyWhenOneIsLegal) {
    int mates = 0;
    const auto visit = [&] {
        if (!IsKingAttacked(board.SideToMove)) return;
        const bool hasReply = !LegalMoves().empty();
        ASSERT_EQ(HasLegalReply(), hasReply);
        mates += !hasReply;
    };
    VisitBoth(60000, 33, visit);
    EXPECT_GT(mates, 100 / WORK_DIVISOR);
    // En passant is the only reply, and then uncovers a bishop.
    for (const char* fen : {"8/8/7R/3k4/3pP3/6B1/8/K1R1R3 b - e4", "8/8/7R/3k4/3pP3/6B1/8/K1R1R2B b - e4"}) {
        LoadFEN(fen);
        visit();
    }
}

}  // namespace
