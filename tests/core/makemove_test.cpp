#include "core/makemove.h"

#include "core/board.h"
#include "core/boardcheck.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/material.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using MakeMoveTest = CoreTest;

bool HasTooManyForATable() {
    for (const unsigned piece : {KNIGHT, BISHOP, ROOK, QUEEN}) {
        if (board.PieceNumber[piece][WHITE] > 2 || board.PieceNumber[piece][BLACK] > 2) return true;
    }
    return false;
}

// The men themselves and the castling rights are left to the published numbers of perft.
TEST_F(MakeMoveTest, KeepsEveryFieldThroughRandomGames) {
    int enPassant = 0, castling = 0, underPromotions = 0, signaturesLost = 0, signaturesRegained = 0;
    VisitPositions(30'000 / WORK_DIVISOR, 1, [&] {
        const Board before = board;
        // The siblings of the first move find the record written.
        int save = 1;
        for (const Move move : MovesOf(GenerateMoves)) {
            const bool isQuiet = MovePiece(move) != PAWN && MoveCaptured(move) == EMPTY;
            MakeMove(move, save);
            save = 0;
            ASSERT_TRUE(IsBoardExact()) << TextOf({move});
            ASSERT_EQ(board.MaterialSignature == NO_SIGNATURE, HasTooManyForATable()) << TextOf({move});
            ASSERT_EQ(board.Fifty, isQuiet ? before.Fifty + 1 : 0) << TextOf({move});
            ASSERT_EQ(board.SideToMove, before.SideToMove ^ 1);
            ASSERT_EQ(LastMove(), move);
            enPassant += IsEnPassant(move);
            castling += IsCastling(move);
            underPromotions += MovePromotion(move) != EMPTY && MovePromotion(move) != QUEEN;
            const bool hadSignature = before.MaterialSignature != NO_SIGNATURE;
            signaturesLost += hadSignature && HasTooManyForATable();
            signaturesRegained += !hadSignature && !HasTooManyForATable();
            UnmakeMove();
            ASSERT_TRUE(board == before) << TextOf({move});
        }
    });
    for (const int met : {enPassant, castling, underPromotions, signaturesLost, signaturesRegained})
        EXPECT_GT(met, 0);
}

TEST_F(MakeMoveTest, TakesBackWhatWasPlayedWhoeverIsToMove) {
    EXPECT_FALSE(TakeBackMove());
    const Board before = board;
    for (const int side : {WHITE, BLACK}) {
        MakeMove(BuildMove(12, 28, PAWN), 1);
        board.SideToMove = side;
        EXPECT_TRUE(TakeBackMove());
        EXPECT_TRUE(board == before);
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
    LoadFEN(EN_PASSANT_BOTH_SIDES);
    const Board before = board;
    MakeNullMove();
    EXPECT_EQ(LastMove(), NO_MOVE);
    board.SideToMove ^= 1;
    EXPECT_TRUE(board == before);
    board.SideToMove ^= 1;
    UnmakeNullMove();
    EXPECT_TRUE(board == before);
}

}  // namespace
