#include "tuning/quiet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/movelist.h"
#include "tests/eval/evaltest.h"
#include "tests/support/tempdirectory.h"
#include "tuning/labelled.h"
#include "tuning/samples.h"

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
                {"c9 \"0-1\"; id \"2021-01-05\";", 0},
                {"id \"Smith-Jones 11-05\"; c9 \"1-0\";", 1},
                {"id \"2020-10-11\";", -1},
                {"0-1 then 1-0", 0},
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

TEST(LabelledTest, AScoreStandsBesideTheResult) {
    constexpr char POSITION[] = "8/8/4k3/8/8/4K3/4P3/8 b - - ";
    const auto read = [&](const std::string& rest) {
        int score = 7777;
        return ReadScore((POSITION + rest).c_str(), &score) ? score : 7777;
    };
    EXPECT_EQ(read("c9 \"1-0\"; ce -88; acd 12;"), -88);
    EXPECT_EQ(read("ce 32000;"), 2000);
    EXPECT_EQ(read("c9 \"1-0\";"), 7777);
    EXPECT_EQ(read("ce ;"), 7777);
}

TEST(SamplesTest, PositionsOfAGameStayTogether) {
    int held = 0;
    for (int game = 0; game < 500; ++game) {
        const std::string id = " id \"game " + std::to_string(game) + "\"; ";
        const bool isHeld = IsHeldBack("one" + id, 20);
        EXPECT_EQ(IsHeldBack("another" + id + "ce 20;", 20), isHeld);
        held += isHeld ? 1 : 0;
    }
    EXPECT_GT(held, 60);
    EXPECT_LT(held, 140);
    EXPECT_FALSE(IsHeldBack("one", 0));
}

// Scores are the mover's, results White's.
TEST(SamplesTest, ScoresTakeTheirShareOfTheResult) {
    const TempDirectory directory;
    std::string text;
    for (const char* rest :
         {"w - - c9 \"1-0\"; ce 150;", "b - - c9 \"1-0\"; ce -150;", "w - - c9 \"0-1\"; ce -150;",
          "b - - c9 \"0-1\"; ce 150;", "w - - c9 \"0-1\"; ce 150;", "w - - c9 \"1-0\";"}) {
        text += std::string("8/5p2/4k3/8/8/4K3/5P2/8 ") + rest + "\n";
    }
    directory.WriteFile("lines", text + "\nnonsense 1-0\n");
    Choice choice;
    choice.HeldBack = 0;
    const auto results = [&](double share) {
        choice.Scores = share;
        ReadingReport report;
        std::vector<float> found;
        const auto samples = ReadSamples({directory.FilePath("lines")}, choice, {}, report);
        EXPECT_EQ(report.Lines, 7);
        EXPECT_EQ(report.WithoutResult, 1);
        for (const Sample& sample : *samples) found.push_back(sample.Result);
        return found;
    };
    EXPECT_EQ(results(0), (std::vector<float>{1, 1, 0, 0, 0, 1}));
    // Four of five scores are right, so the scale must make 0.8 of 150.
    const std::vector<float> blended = results(1), half = results(0.5);
    for (const size_t i : {0u, 1u, 4u}) EXPECT_NEAR(blended[i], 0.8, 0.001);
    for (const size_t i : {2u, 3u}) EXPECT_NEAR(blended[i], 0.2, 0.001);
    EXPECT_EQ(blended[5], 1);
    EXPECT_NEAR(half[4], 0.4, 0.001);
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
    ASSERT_TRUE(SetUpPosition("k7/P7/1K6/8/8/8/8/8 b - -"));
    EXPECT_FALSE(ResolveToQuiet()) << "a stalemate";
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
