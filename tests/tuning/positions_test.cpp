#include "tuning/quiet.h"

#include <gtest/gtest.h>

#include <string>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/movelist.h"
#include "tests/eval/evaltest.h"
#include "tuning/labelled.h"

namespace {

TEST(LabelledTest, TheResultIsReadInItsForms) {
    constexpr char POSITION[] = "8/8/4k3/8/8/4K3/4P3/8 w - - ";
    const struct {
        const char* Rest;
        double Points;
    } rows[] = {{"c9 \"1-0\";", 1},
                {"c9 \"0-1\"; ce -88; acd 12;", 0},
                {"c9 \"1/2-1/2\"; ce 0;", 0.5},
                {"0 1 1-0", 1},
                {"[0.5]", 0.5},
                {"[0.0]", 0},
                {"", -1},
                {"c9 \"*\";", -1},
                {"ce 10;", -1}};
    for (const auto& [rest, points] : rows) {
        EXPECT_EQ(ResultOf((std::string(POSITION) + rest).c_str()), points) << rest;
    }
    // What stands in front is the position, whatever it looks like.
    EXPECT_EQ(ResultOf("1-0 1-0 1-0"), -1);
    EXPECT_EQ(ResultOf("1-0 1-0 1-0 1-0 0-1"), 0);
    EXPECT_FALSE(SetUpPosition("8/8/8/8/8/8/8/8 w - - 1-0"));
    EXPECT_FALSE(SetUpPosition(""));
}

class QuietTest : public EvalTest {};

TEST_F(QuietTest, WhatHangsIsTakenAndWhatIsHeldIsNot) {
    const struct {
        const char *Position, *Quiet;
    } rows[] = {
        {"6k1/5ppp/8/3n4/4P3/8/5PPP/6K1 w - -", "6k1/5ppp/8/3P4/8/8/5PPP/6K1 b - -"},
        {"3q2k1/5pp1/7p/8/8/8/5PPP/3R2K1 w - -", "3R4/5ppk/7p/8/8/8/5PPP/6K1 w - -"},
        {"6k1/5ppp/4p3/3p4/8/8/5PPP/3R2K1 w - -", "6k1/5ppp/4p3/3p4/8/8/5PPP/3R2K1 w - -"},
        {"8/P4pkp/6p1/8/4n3/8/5PPP/4N1K1 w - -", "Q7/5pkp/6p1/8/4n3/8/5PPP/4N1K1 b - -"},
    };
    for (const auto& [position, quiet] : rows) {
        ASSERT_TRUE(SetUpPosition(quiet));
        const Board wanted = board;
        ASSERT_TRUE(SetUpPosition(position));
        EXPECT_TRUE(ResolveToQuiet()) << position;
        EXPECT_EQ(HistoryLength, 0);
        EXPECT_EQ(board.HashKey, wanted.HashKey) << position;
        EXPECT_EQ(board.SideToMove, wanted.SideToMove) << position;
    }
    ASSERT_TRUE(SetUpPosition("R5k1/5ppp/8/8/8/8/8/6K1 b - -"));
    EXPECT_FALSE(ResolveToQuiet()) << "a mate";
}

// Every random board comes to an end, with men that were there before.
TEST_F(QuietTest, AnyPositionMayBeAskedAbout) {
    int quiet = 0;
    VisitRandomBoards(400 / WORK_DIVISOR, 3, [&] {
        const Board before = board;
        if (ResolveToQuiet()) {
            ++quiet;
            EXPECT_FALSE(IsKingAttacked(board.SideToMove));
        }
        EXPECT_LE(board.PieceCount, before.PieceCount);
        EXPECT_EQ(MoveListTop, 0);
        board = before;
    });
    EXPECT_GT(quiet, 200 / WORK_DIVISOR);
}

}  // namespace
