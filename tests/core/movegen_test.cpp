#include "core/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/movescore.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using MovegenTest = CoreTest;

std::vector<Move> Sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

Bitboard Opponents() {
    return board.Occupied[board.SideToMove ^ 1];
}

bool IsCastling(Move move) {
    return MovePiece(move) == KING && std::abs(MoveTo(move) - MoveFrom(move)) == 2;
}

std::vector<Move> StagedMoves() {
    std::vector<Move> moves = MovesOf([] { GenerateCaptures(Opponents()); });
    for (const auto& stage : {MovesOf(GeneratePromotions), MovesOf([] { GenerateQuiet(1); })}) {
        moves.insert(moves.end(), stage.begin(), stage.end());
    }
    return moves;
}

TEST_F(MovegenTest, LegalMovesAreThoseOfTheRules) {
    int checks = 0;
    VisitPositions(30000 / WORK_DIVISOR, 21, [&] {
        const SlowPosition position = SlowPosition::FromBoard();
        const std::vector<Move> expected = position.LegalMoves();
        const std::vector<Move> staged = StagedMoves(), sorted = Sorted(staged);
        ASSERT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << TextOf(sorted);
        ASSERT_EQ(staged, MovesOf(GenerateAllStages));
        std::vector<Move> legal = LegalOnes(staged);
        if (!position.IsInCheck()) {
            ASSERT_EQ(TextOf(legal), TextOf(expected));
            ASSERT_EQ(legal, expected);
            return;
        }
        // In check the stages offer castling on top; the evasions are exact but for en passant.
        ++checks;
        std::erase_if(legal, IsCastling);
        ASSERT_EQ(TextOf(legal), TextOf(expected));
        std::vector<Move> evasions = Sorted(MovesOf(GenerateEvasions));
        ASSERT_EQ(std::adjacent_find(evasions.begin(), evasions.end()), evasions.end()) << TextOf(evasions);
        std::erase_if(evasions, [](Move move) { return IsEnPassant(move) && !LeavesKingSafe(move); });
        ASSERT_EQ(TextOf(evasions), TextOf(expected));
        ASSERT_EQ(evasions, expected);
    });
    EXPECT_GT(checks, 1000 / WORK_DIVISOR);
}

TEST_F(MovegenTest, NarrowTargetsRestrictTheCaptures) {
    std::mt19937_64 random(22);
    VisitPositions(10000 / WORK_DIVISOR, 22, [&] {
        const Bitboard targets = Opponents() & random();
        std::vector<Move> expected = MovesOf([] { GenerateCaptures(Opponents()); });
        std::erase_if(expected,
                      [&](Move move) { return !IsEnPassant(move) && !(targets >> MoveTo(move) & 1); });
        ASSERT_EQ(TextOf(MovesOf([&] { GenerateCaptures(targets); })), TextOf(expected));
        // The short list of promotions is the long one without rooks and bishops.
        std::vector<Move> promotions = MovesOf(GeneratePromotions);
        std::erase_if(promotions,
                      [](Move move) { return MovePromotion(move) == ROOK || MovePromotion(move) == BISHOP; });
        ASSERT_EQ(MovesOf(GenerateQueenKnightPromotions), promotions);
    });
}

TEST_F(MovegenTest, AppendsInTheFixedOrder) {
    for (const DataRow& row : ReadDataRows("generator_order.txt")) {
        LoadFEN(row.Fen.c_str());
        const auto expected = [&](const char* key) {
            std::string text;
            for (const std::string& move : row.Values(key)) text += (text.empty() ? "" : " ") + move;
            return text;
        };
        EXPECT_EQ(TextOf(MovesOf([] { GenerateCaptures(Opponents()); })), expected("captures")) << row.Fen;
        EXPECT_EQ(TextOf(MovesOf(GeneratePromotions)), expected("promotions")) << row.Fen;
        EXPECT_EQ(TextOf(MovesOf(GenerateQueenKnightPromotions)), expected("queen_knight")) << row.Fen;
        EXPECT_EQ(TextOf(MovesOf([] { GenerateQuiet(0); })), expected("quiet")) << row.Fen;
    }
}

TEST_F(MovegenTest, OrdersPromotionsByStage) {
    LoadFEN("r3k3/1P4P1/8/8/8/8/8/4K3 w - -");
    EXPECT_EQ(TextOf(MovesOf([] { GenerateCaptures(Opponents()); })), "b7a8q b7a8n b7a8r b7a8b");
    EXPECT_EQ(TextOf(MovesOf(GeneratePromotions)), "g7g8q g7g8r g7g8n g7g8b b7b8q b7b8r b7b8n b7b8b");
    LoadFEN("4k3/8/8/8/8/8/1p4p1/R3K3 b - -");
    EXPECT_EQ(TextOf(MovesOf(GeneratePromotions)), "b2b1q b2b1r b2b1n b2b1b g2g1q g2g1r g2g1n g2g1b");
    // Replies to a check: the king, then men that block or take, pawns last, in an order of their own.
    LoadFEN("R3k3/1p4P1/8/8/8/8/1pn5/K6r w - -");
    EXPECT_EQ(TextOf(MovesOf(GenerateEvasions)), "a1a2 a1b2");
    LoadFEN("8/8/8/8/8/3r4/2p1k3/K2R4 b - -");
    EXPECT_EQ(TextOf(MovesOf([] { GenerateCaptures(Opponents()); })), "c2d1q c2d1n c2d1r c2d1b d3d1 e2d1");
    LoadFEN("8/8/8/8/8/k7/1p6/R1K5 b - -");
    EXPECT_EQ(TextOf(MovesOf(GenerateEvasions)), "a3b3 a3b4 b2a1q b2a1r b2a1b b2a1n");
}

TEST_F(MovegenTest, RepliesToAPawnThatChecksByItsDoubleStep) {
    LoadFEN(EN_PASSANT_ANSWERS_CHECK);
    EXPECT_EQ(TextOf(MovesOf(GenerateEvasions)), "c5b4 c5c4 c5d4 c5b5 c5d5 c5b6 c5c6 c5d6 e4d3");
    LoadFEN("8/8/8/2k5/2pP4/8/8/2R1K3 b - d4");
    EXPECT_EQ(TextOf(MovesOf(GenerateEvasions)).find("c4d3"), std::string::npos) << "pinned";
    // No pawn stands beside one on the edge of the board.
    for (const char* fen : {"8/8/8/1k6/P7/7p/8/4K3 b - a4", "8/8/8/p5k1/7P/8/8/4K3 b - h4"}) {
        LoadFEN(fen);
        EXPECT_EQ(Sorted(MovesOf(GenerateEvasions)), SlowPosition::FromBoard().LegalMoves()) << fen;
    }
    // The capture would uncover the rook; the caller finds that out.
    LoadFEN("8/8/8/8/R1pP1p1k/4K3/8/8 b - d4");
    EXPECT_FALSE(IsKingAttacked(BLACK));
    EXPECT_TRUE(IsLegalMove(TextToMove("c4d3")));
    LoadFEN("8/8/8/8/R2Pp2k/4K3/8/8 b - d4");
    EXPECT_FALSE(IsLegalMove(TextToMove("e4d3")));
}

TEST_F(MovegenTest, AcceptsExactlyTheLegalWords) {
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        const std::vector<Move> legal = SlowPosition::FromBoard().LegalMoves();
        std::vector<Move> accepted;
        for (int squares = 0; squares < 4096; ++squares) {
            const int from = squares >> 6, to = squares & 63;
            for (const char letter : {'\0', 'n', 'b', 'r', 'q'}) {
                const char text[] = {static_cast<char>('a' + from % 8),
                                     static_cast<char>('1' + from / 8),
                                     static_cast<char>('a' + to % 8),
                                     static_cast<char>('1' + to / 8),
                                     letter,
                                     '\0'};
                const Move move = TextToMove(text);
                if (IsLegalMove(move)) accepted.push_back(move);
            }
        }
        EXPECT_EQ(TextOf(Sorted(accepted)), TextOf(legal)) << fen;
        EXPECT_EQ(Sorted(accepted), legal) << fen;
        EXPECT_FALSE(IsLegalMove(NO_MOVE));
        for (const Move move : legal) {
            EXPECT_FALSE(IsLegalMove(move | Move{1} << 21)) << TextOf({move});
            EXPECT_FALSE(IsLegalMove(move ^ Move{1} << 14)) << TextOf({move});
        }
    }
    EXPECT_EQ(MoveListTop, 0);
}

TEST_F(MovegenTest, ScoresComeFromTheAskedTable) {
    const Move move = TextToMove("g1f3");
    ClearHistoryCounters();
    HistoryCounter(move, 1, WHITE) = 321;
    const auto scoreOf = [&](int table) {
        MoveListTop = 0;
        GenerateQuiet(table);
        SelectBestMove(0);
        MoveListTop = 0;
        return MoveList[0];
    };
    EXPECT_EQ(scoreOf(1).Move, move);
    EXPECT_EQ(scoreOf(1).Score, 321);
    EXPECT_EQ(scoreOf(0).Score, 0);
    ClearHistoryCounters();
}

TEST_F(MovegenTest, SelectsTheEarliestOfEqualsAndKeepsTheRest) {
    const int scores[] = {5, 9, -1, 9, 7};
    for (int i = 0; i < 5; ++i) AppendMove(static_cast<Move>(i + 1), scores[i]);
    SelectBestMove(1);
    EXPECT_EQ(MoveList[0].Move, 1u);
    EXPECT_EQ(MoveList[1].Move, 2u);
    SelectBestMove(2);
    EXPECT_EQ(MoveList[2].Move, 4u);
    EXPECT_EQ(MoveList[3].Move, 3u);
    EXPECT_EQ(MoveListTop, 5);
    MoveListTop = 0;
}

}  // namespace
