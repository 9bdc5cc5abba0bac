#include "core/makemove.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/keys.h"
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
        Castling += MovePiece(move) == KING && (MoveTo(move) - MoveFrom(move)) % 8 != 0 &&
                    before.CastlingFlags != 0 && std::abs(MoveTo(move) - MoveFrom(move)) == 2;
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

TEST_F(MakeMoveTest, TakesWholeGamesBack) {
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        std::mt19937_64 random(11);
        std::vector<Board> boards;
        const int first = HistoryLength;
        for (int ply = 0; ply < 200; ++ply) {
            const std::vector<Move> legal = LegalOnes(MovesOf(GenerateMoves));
            if (legal.empty()) break;
            boards.push_back(board);
            MakeMove(legal[random() % legal.size()], 1);
        }
        for (; !boards.empty(); boards.pop_back()) {
            UnmakeMove();
            ASSERT_TRUE(board == boards.back()) << fen << " ply " << boards.size();
        }
        EXPECT_EQ(HistoryLength, first);
    }
}

TEST_F(MakeMoveTest, CutsCastlingRightsByKingRookAndVictim) {
    const auto flagsAfter = [](const char* fen, Move move) {
        LoadFEN(fen);
        MakeMove(move, 1);
        return board.CastlingFlags;
    };
    EXPECT_EQ(flagsAfter(CASTLING_ALL, BuildMove(E1, G1, KING)), 12u);
    EXPECT_EQ(board.PieceOn[F1], unsigned{ROOK});
    EXPECT_EQ(board.PieceOn[H1], unsigned{EMPTY});
    EXPECT_EQ(board.Fifty, 1u);
    EXPECT_EQ(flagsAfter(CASTLING_ALL, BuildMove(A1, A8, ROOK, ROOK)), 5u);
    EXPECT_EQ(flagsAfter(CASTLING_ALL, BuildMove(H1, H8, ROOK, ROOK)), 10u);
    EXPECT_EQ(flagsAfter(PROMOTION_CAPTURES_ROOK, BuildMove(54, H8, PAWN, ROOK, QUEEN)), 11u);
    EXPECT_EQ(flagsAfter(PROMOTION_CAPTURES_ROOK, BuildMove(49, A8, PAWN, ROOK, KNIGHT)), 7u);
}

TEST_F(MakeMoveTest, LosesAndRegainsTheSignatureWithTheThirdKnight) {
    LoadFEN(THREE_KNIGHTS);
    EXPECT_EQ(board.MaterialSignature, NO_SIGNATURE);
    LoadFEN("4k3/8/8/8/8/6r1/2N3N1/4K2N b - -");
    ASSERT_EQ(board.MaterialSignature, NO_SIGNATURE);
    MakeMove(BuildMove(22, 14, ROOK, KNIGHT), 1);
    EXPECT_EQ(board.MaterialSignature, 2u * 729 + 27);
    UnmakeMove();
    EXPECT_EQ(board.MaterialSignature, NO_SIGNATURE);
    // A pawn capture leaves it alone, and so does a capture while another kind is still too many.
    LoadFEN("qqqk4/8/8/8/8/2P3r1/2N3N1/4K2N b - -");
    MakeMove(BuildMove(22, 18, ROOK, PAWN), 1);
    EXPECT_EQ(board.MaterialSignature, NO_SIGNATURE);
    UnmakeMove();
    MakeMove(BuildMove(22, 14, ROOK, KNIGHT), 1);
    EXPECT_EQ(board.MaterialSignature, NO_SIGNATURE);
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
    EXPECT_EQ(SlowPosition::FromBoard().Text(),
              "1111k111/111p1111/11111111/11P1P111/11111111/11111111/11111111/1111K111 b - -");
    EXPECT_TRUE(board == Rebuild(SlowPosition::FromBoard()));
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
