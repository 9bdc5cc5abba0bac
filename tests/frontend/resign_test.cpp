#include "frontend/resign.h"

#include <gtest/gtest.h>

#include <string>

#include "core/board.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "frontend/newgame.h"
#include "search/root.h"
#include "tests/support/walker.h"

namespace {

class ResignTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        ResignValue = 800;
        ResignTimes = 3;
        RootMoveCount = 20;
        // Nothing of an earlier game may count.
        for (int i = 0; i < 10; ++i) PlayKnights(i, 0);
        CoreTest::SetUp();
    }
    void TearDown() override {
        RootMoveCount = RootScore = 0;
        CoreTest::SetUp();
    }

    // The engine's move with its score, with the opponent's move before it.
    static void PlayOwn(const char* opponent, const char* own, int score) {
        if (board.SideToMove == WHITE) PlayMove(TextToMove(opponent));
        PlayMove(TextToMove(own));
        RootScore = score;
        PushResignHistory();
        if (HistoryLength > 100) ResetBoard();
    }

    // The engine's i-th move in a game of knights going out and back.
    static void PlayKnights(int i, int score) {
        PlayOwn(i % 2 == 0 ? "g1f3" : "f3g1", i % 2 == 0 ? "g8f6" : "f6g8", score);
    }
};

TEST_F(ResignTest, AfterSoManyBadScoresInARow) {
    const int scores[] = {-900, -801, -800, -801, -900, -801};
    const bool resigns[] = {false, false, false, false, false, true};
    for (int i = 0; i < 6; ++i) {
        PlayKnights(i, scores[i]);
        EXPECT_EQ(ShouldResign(), resigns[i]) << i;
    }
    PlayKnights(6, -900);
    EXPECT_TRUE(ShouldResign());
    PlayKnights(7, 20);
    EXPECT_FALSE(ShouldResign());
}

TEST_F(ResignTest, ForcedMovesDoNotChangeTheStreak) {
    PlayKnights(0, -900);
    PlayKnights(1, -900);
    RootMoveCount = 1;
    PlayKnights(2, 0);
    EXPECT_TRUE(ShouldResign()) << "the score before it counts for it";
    RootMoveCount = 20;
    PlayKnights(3, 100);
    RootMoveCount = 1;
    PlayKnights(4, -900);
    RootMoveCount = 20;
    PlayKnights(5, -900);
    PlayKnights(6, -900);
    EXPECT_FALSE(ShouldResign());
}

TEST_F(ResignTest, OnlyMovesOfThisGameCount) {
    PlayKnights(0, -900);
    PlayKnights(1, -900);
    TakeBackMove();
    TakeBackMove();
    PlayOwn("f3g1", "b8c6", -900);
    EXPECT_FALSE(ShouldResign()) << "a move that has been taken back";
    CoreTest::SetUp();
    PlayOwn("e2e4", "e7e5", -900);
    PlayOwn("d2d4", "d7d5", -900);
    EXPECT_FALSE(ShouldResign()) << "two of another game";
    ResignTimes = 2;
    EXPECT_TRUE(ShouldResign());
    ResignTimes = 1000;
    for (int i = 0; i < 30; ++i) PlayKnights(i, -900);
    EXPECT_FALSE(ShouldResign()) << "more than is remembered";
}

}  // namespace
