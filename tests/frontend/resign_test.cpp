#include "frontend/resign.h"

#include <gtest/gtest.h>

#include "core/makemove.h"
#include "core/movetext.h"
#include "frontend/newgame.h"
#include "search/bookanswer.h"
#include "search/root.h"
#include "tests/support/walker.h"

namespace {

// The engine's i-th move in a game of knights going out and back, with its score.
void PlayMoves(int i, int score, int choices) {
    for (const char* move : {i % 2 == 0 ? "g1f3" : "f3g1", i % 2 == 0 ? "g8f6" : "f6g8"}) {
        PlayMove(TextToMove(move));
    }
    RootMoveCount = choices;
    RootScore = score;
    PushResignHistory();
}

using ResignTest = CoreTest;

TEST_F(ResignTest, AfterSoManyBadScoresInARow) {
    ResignValue = 800;
    ResignTimes = 3;
    const struct {
        int Score, Choices;
        bool Resigns;
    } rows[] = {
        {20, 9, false},   {-900, 9, false}, {-801, 9, false}, {-800, 9, false}, {-801, 9, false},
        {-900, 9, false}, {-801, 9, true},  {0, 1, true},  // a forced move: the score before it counts
        {20, 9, false},   {-900, 9, false}, {-900, 9, false},
    };
    int i = 0;
    for (const auto& [score, choices, resigns] : rows) {
        PlayMoves(i++, score, choices);
        EXPECT_EQ(ShouldResign(), resigns) << i;
    }
    IsBookMove = 1;
    PlayMoves(i, 0, 1);
    EXPECT_FALSE(ShouldResign()) << "a book move is not forced";
    IsBookMove = 0;
    TakeBackMove();
    TakeBackMove();
    TakeBackMove();
    TakeBackMove();
    PlayMoves(i - 1, -900, 9);
    EXPECT_FALSE(ShouldResign()) << "the move that has been taken back doesn't count";
    RootMoveCount = RootScore = 0;
}

}  // namespace
