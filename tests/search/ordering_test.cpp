#include "search/ordering.h"

#include <gtest/gtest.h>

#include "search/plyinfo.h"
#include "tests/search/searchtest.h"

namespace {

constexpr Move A = BuildMove(1, 18, KNIGHT), B = BuildMove(6, 21, KNIGHT), C = BuildMove(12, 28, PAWN);

using OrderingTest = SearchTest;

TEST_F(OrderingTest, KillersAreTheLastTwoDifferentMoves) {
    Ply = 6;
    const PlyRecord& record = PlyInfo[Ply];
    for (const Move move : {A, B, B, C, C}) UpdateHistory(60, move, 0);
    Ply = 0;
    EXPECT_TRUE(record.Killer1[WHITE] == C && record.Killer2[WHITE] == B);
    EXPECT_TRUE(record.Killer1[BLACK] == NO_MOVE && record.Killer2[BLACK] == NO_MOVE);
    // Two plies of the game later they belong two plies nearer to the root.
    HistoryCounter(A, 0, WHITE) = 32700;
    TargetTime = 71;
    AgeHistory();
    EXPECT_EQ(HistoryCounter(A, 0, WHITE), 127);
    EXPECT_TRUE(PlyInfo[4].Killer1[WHITE] == C && PlyInfo[4].Killer2[WHITE] == B);
    EXPECT_TRUE(record.Killer1[WHITE] == NO_MOVE && record.Killer2[WHITE] == NO_MOVE);
    TargetTime = 70;
    AgeHistory();
    EXPECT_EQ(HistoryCounter(A, 0, WHITE), 0) << "nothing is kept in a hurry";
    EXPECT_TRUE(PlyInfo[2].Killer1[WHITE] == C && PlyInfo[4].Killer1[WHITE] == NO_MOVE);
}

TEST_F(OrderingTest, RecaptureStatisticsHalve) {
    const Move capture = BuildMove(3, 35, QUEEN, PAWN);
    ClearRecaptureStatistics();
    const int slot = FreshStatIndex(capture, WHITE);
    for (int i = 0; i < 64; ++i) UpdateRecapture(capture, SAFE_CAPTURE_SCORE - 1, i % 4 == 0);
    EXPECT_TRUE(TriedCount[slot] == 64 && GoodCount[slot] == 16);
    UpdateRecapture(capture, SAFE_CAPTURE_SCORE - 1, true);
    EXPECT_TRUE(TriedCount[slot] == 32 && GoodCount[slot] == 8) << TriedCount[slot];
}

}  // namespace
