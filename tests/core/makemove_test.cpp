#include "core/makemove.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/board.h"
#include "core/boardcheck.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/material.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using MakeMoveTest = CoreTest;

// `board` as AddPiece makes it from nothing but the position.
Board Rebuild(const SlowPosition& position) {
    const Board actual = board;
    ClearBoard();
    for (int square = 0; square < 64; ++square) {
        const SlowPosition::Man& man = position.Men[square];
        if (man.Piece != EMPTY) AddPiece(square, man.Side, man.Piece);
    }
    Board rebuilt = board;
    board = actual;
    rebuilt.SideToMove = position.SideToMove;
    rebuilt.CastlingFlags = position.Castling;
    rebuilt.Fifty = position.Fifty;
    std::copy_n(actual.PieceNumber[KING], 2, rebuilt.PieceNumber[KING]);  // only ever counted up
    return rebuilt;
}

struct RareMoves {
    int EnPassant = 0, Castling = 0, UnderPromotions = 0, ThirdQueens = 0, SignaturesRegained = 0;

    void Count(Move move, const Board& before) {
        EnPassant += IsEnPassant(move);
        Castling += IsCastling(move);
        UnderPromotions += MovePromotion(move) != EMPTY && MovePromotion(move) != QUEEN;
        ThirdQueens += board.PieceNumber[QUEEN][before.SideToMove] > 2;
        SignaturesRegained +=
            before.MaterialSignature == NO_SIGNATURE && board.MaterialSignature != NO_SIGNATURE;
    }
};

TEST_F(MakeMoveTest, KeepsEveryFieldThroughRandomGames) {
    constexpr int64_t MOVES = 1'000'000 / WORK_DIVISOR;
    int64_t made = 0;
    RareMoves met;
    for (uint64_t seed = 1; made < MOVES && !HasFailure(); ++seed) {
        VisitPositions(2000, seed, [&] {
            const Board before = board;
            const SlowPosition position = SlowPosition::FromBoard();
            ASSERT_TRUE(board == Rebuild(position));
            // The siblings of the first move find the record written.
            int save = 1;
            for (const Move move : MovesOf(GenerateMoves)) {
                SlowPosition after = position;
                after.Play(move);
                MakeMove(move, save);
                save = 0;
                ASSERT_TRUE(board == Rebuild(after)) << TextOf({move});
                ASSERT_EQ(LastMove(), move);
                met.Count(move, before);
                UnmakeMove();
                ASSERT_TRUE(board == before) << TextOf({move});
                ++made;
            }
        });
    }
    EXPECT_GE(made, MOVES);
    EXPECT_GT(met.EnPassant, 0);
    EXPECT_GT(met.Castling, 0);
    EXPECT_GT(met.UnderPromotions, 0);
    EXPECT_GT(met.ThirdQueens, 0);
    EXPECT_GT(met.SignaturesRegained, 0);
}

TEST_F(MakeMoveTest, TakesBackWhatWasPlayedWhoeverIsToMove) {
    EXPECT_FALSE(TakeBackMove());
    const Board before = board;
    for (const int side : {WHITE, BLACK}) {
        MakeMove(BuildMove(12, 28, PAWN), 1);
        board.SideToMove = side;
        EXPECT_TRUE(TakeBackMove());
        EXPECT_TRUE(board == before);
        EXPECT_EQ(HistoryLength, 0);
    }
    LoadFEN(EN_PASSANT_BOTH_SIDES);
    EXPECT_TRUE(TakeBackMove());
    EXPECT_EQ(GetFEN(), "43/3p4/8/2P1P3/8/8/8/4K3 b - - ");
    EXPECT_TRUE(IsBoardExact());
    // A double step that nobody can have played.
    LoadFEN("4k3/3n4/8/3pP3/8/8/8/4K3 w - d5");
    const Board claimed = board;
    EXPECT_FALSE(TakeBackMove());
    EXPECT_TRUE(board == claimed);
}

TEST_F(MakeMoveTest, NullMovePassesTheTurnAndNothingElse) {
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        Board expected = board;
        expected.SideToMove ^= 1;
        const Board before = board;
        MakeNullMove();
        EXPECT_TRUE(board == expected) << fen;
        EXPECT_EQ(LastMove(), NO_MOVE);
        UnmakeNullMove();
        EXPECT_TRUE(board == before) << fen;
    }
}

}  // namespace
