#include "core/movegen.h"

#include <random>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/fen.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using MovegenTest = CoreTest;

Bitboard Opponents() {
    return board.Occupied[board.SideToMove ^ 1];
}
std::vector<Move> Captures() {
    return MovesOf([] { GenerateCaptures(Opponents()); });
}
std::vector<Move> Promotions() {
    return MovesOf(GeneratePromotions);
}
std::vector<Move> Evasions() {
    return MovesOf(GenerateEvasions);
}

TEST_F(MovegenTest, StagesFitTogether) {
    std::mt19937_64 random(22);
    VisitPositions(10000 / WORK_DIVISOR, 22, [&] {
        const std::vector<Move> captures = Captures(), quiet = MovesOf([] { GenerateQuiet(1); });
        std::vector<Move> promotions = Promotions();
        std::vector<Move> all = captures;
        all.insert(all.end(), promotions.begin(), promotions.end());
        all.insert(all.end(), quiet.begin(), quiet.end());
        ASSERT_EQ(TextOf(MovesOf(GenerateAllStages)), TextOf(all));
        const Bitboard targets = Opponents() & random();
        std::vector<Move> narrow = captures;
        std::erase_if(narrow,
                      [=](Move move) { return !IsEnPassant(move) && !(targets >> MoveTo(move) & 1); });
        ASSERT_EQ(TextOf(MovesOf([=] { GenerateCaptures(targets); })), TextOf(narrow));
        std::erase_if(promotions,
                      [](Move move) { return MovePromotion(move) == ROOK || MovePromotion(move) == BISHOP; });
        ASSERT_EQ(TextOf(MovesOf(GenerateQueenKnightPromotions)), TextOf(promotions));
    });
}

TEST_F(MovegenTest, CountsThePiecesThatBearOnTheKing) {
    VisitRandomBoards(5000 / WORK_DIVISOR, 23, [&] {
        const int us = board.SideToMove, king = static_cast<int>(board.KingSquare[us ^ 1]);
        const Bitboard zone = AttacksFrom(king, us ^ 1, KING) | SquareBit(king);
        int expected[2] = {0, 0};
        for (int square = 0; square < 64; ++square) {
            for (const unsigned piece : {KNIGHT, BISHOP, ROOK, QUEEN}) {
                expected[us] += HasMan(square, us, piece) && (AttacksFrom(square, us, piece) & zone) != 0;
            }
        }
        ResetKingAttackCounts();
        Captures();
        for (const int side : {WHITE, BLACK}) ASSERT_EQ(KingAttackCount[side], expected[side]);
    });
}

TEST_F(MovegenTest, AppendsInTheFixedOrder) {
    for (const DataRow& row : ReadDataRows("generator_order.txt")) {
        LoadFEN(row.Fen.c_str());
        const auto expected = [&](const char* key) { return JoinWords(row.Values(key)); };
        EXPECT_EQ(TextOf(Captures()), expected("captures")) << row.Fen;
        EXPECT_EQ(TextOf(Promotions()), expected("promotions")) << row.Fen;
        EXPECT_EQ(TextOf(MovesOf(GenerateQueenKnightPromotions)), expected("queen_knight")) << row.Fen;
        EXPECT_EQ(TextOf(MovesOf([] { GenerateQuiet(0); })), expected("quiet")) << row.Fen;
    }
}

// Replies to a check have an order of their own: the king, then men that block or take, pawns last.
TEST_F(MovegenTest, OrdersPromotionsAndEvasionsByStage) {
    const struct {
        const char* Fen;
        std::vector<Move> (*Generate)();
        const char* Moves;
    } rows[] = {
        {"r3k3/1P4P1/8/8/8/8/8/4K3 w - -", Promotions, "g7g8q g7g8r g7g8n g7g8b b7b8q b7b8r b7b8n b7b8b"},
        {"4k3/8/8/8/8/8/1p4p1/R3K3 b - -", Promotions, "b2b1q b2b1r b2b1n b2b1b g2g1q g2g1r g2g1n g2g1b"},
        {"8/8/8/8/8/3r4/2p1k3/K2R4 b - -", Captures, "c2d1q c2d1n c2d1r c2d1b d3d1 e2d1"},
        {"R3k3/1p4P1/8/8/8/8/1pn5/K6r w - -", Evasions, "a1a2 a1b2"},
        {"8/8/8/8/8/k7/1p6/R1K5 b - -", Evasions, "a3b3 a3b4 b2a1q b2a1r b2a1b b2a1n"},
        {EN_PASSANT_ANSWERS_CHECK, Evasions, "c5b4 c5c4 c5d4 c5b5 c5d5 c5b6 c5c6 c5d6 e4d3"},
        // The pawn beside is pinned; and none stands beside one on the edge of the board.
        {"8/8/8/2k5/2pP4/8/8/2R1K3 b - d4", Evasions, "c5b4 c5d4 c5b5 c5d5 c5b6 c5c6 c5d6"},
        {"8/8/8/1k6/P7/7p/8/4K3 b - a4", Evasions, "b5a4 b5b4 b5c4 b5a5 b5c5 b5a6 b5b6 b5c6"},
        {"8/8/8/p5k1/7P/8/8/4K3 b - h4", Evasions, "g5f4 g5g4 g5h4 g5f5 g5h5 g5f6 g5g6 g5h6"},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        EXPECT_EQ(TextOf(row.Generate()), row.Moves) << row.Fen;
    }
}

TEST_F(MovegenTest, SelectsTheEarliestOfEqualsAndKeepsTheRest) {
    const int scores[] = {5, 9, -1, 9, 7};
    for (int i = 0; i < 5; ++i) AppendMove(static_cast<Move>(i + 1), scores[i]);
    SelectBestMove(1, MoveListTop);
    SelectBestMove(2, MoveListTop);
    const Move expected[] = {1, 2, 4, 3, 5};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(MoveList[i].Move, expected[i]) << i;
    EXPECT_EQ(MoveListTop, 5);
}

}  // namespace
