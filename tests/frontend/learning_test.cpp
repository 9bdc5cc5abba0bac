#include "frontend/learning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "book/booksettings.h"
#include "book/learnqueue.h"
#include "core/board.h"
#include "core/movetext.h"
#include "frontend/newgame.h"
#include "frontend/resign.h"
#include "search/bookanswer.h"
#include "search/root.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

namespace {

// Scores of the engine's own moves in a game, and what they teach.
class LearningTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        std::filesystem::current_path(directory_.Path());
        OpenLearningFile();
        Restart();
    }
    void TearDown() override {
        CloseLearningFile();
        ClearLearningQueue();
        std::filesystem::current_path("/");
        IsBookMove = RootMoveCount = RootScore = IterationDepth = 0;
        CoreTest::TearDown();
    }

    void Restart() {
        ResetBoard();
        std::fill_n(ResignHistory, OWN_MOVES_KEPT, OwnMove{});
        ClearLearningQueue();
        IterationDepth = 8;
        moves_ = 0;
        keys_.clear();
    }

    // The engine's next move with its score, and its opponent's answer.
    void Play(int score, bool isFromBook = false) {
        constexpr const char* MOVES[][2] = {{"e2e4", "e7e5"}, {"g1f3", "b8c6"}, {"f1b5", "a7a6"},
                                            {"b5a4", "g8f6"}, {"e1g1", "f8e7"}, {"f1e1", "b7b5"},
                                            {"a4b3", "d7d6"}, {"c2c3", "e8g8"}};
        const auto& [own, reply] = MOVES[moves_++];
        RootMoveCount = 30;
        RootScore = score;
        IsBookMove = isFromBook;
        keys_.push_back(CurrentLearnedKey());
        PlayMove(TextToMove(own));
        PushResignHistory();
        UpdatePositionLearning();
        PlayMove(TextToMove(reply));
    }

    // The record of the position before own move i.
    bool Find(size_t i, LearnedRecord* record) const {
        uint32_t place = 0;
        return FindLearned(keys_[i], record, &place);
    }

  private:
    const TempDirectory directory_;
    size_t moves_ = 0;
    std::vector<LearnedKey> keys_;
};

TEST_F(LearningTest, WritesTheLessonOfALostGame) {
    for (const int score : {20, 30, -20, -300}) Play(score);
    EXPECT_EQ(LearningQueueCount, 2) << "two falls, none of them confirmed";
    Play(-401);
    EXPECT_EQ(LearningQueueCount, 0) << "and no lesson in a game that was lost already";
    LearnedRecord record;
    ASSERT_TRUE(Find(1, &record)) << "the position before the move that was thought good";
    EXPECT_EQ(record.Depth, 8 * 60 + 30);
    EXPECT_EQ(record.Score, -20);
    EXPECT_STREQ(MoveToPieceText(record.Move), "Ng1f3");
    EXPECT_TRUE(Find(2, &record));
    EXPECT_EQ(record.Score, -300);
    EXPECT_FALSE(Find(0, &record));
}

TEST_F(LearningTest, ForgetsWhenTheScoreComesBack) {
    for (const int score : {30, -20, -9, -9}) {
        Play(score);
        EXPECT_EQ(LearningQueueCount, score == 30 ? 0 : 1) << score;
    }
    Play(-9);
    EXPECT_EQ(LearningQueueCount, 0);
    Play(-60);
    EXPECT_EQ(LearningQueueCount, 1);
    Play(-60, true);
    EXPECT_EQ(LearningQueueCount, 0) << "nothing to learn from in the book";
}

TEST_F(LearningTest, LearnsFromClearFallsOfDeepSearchesOnly) {
    const struct {
        int Before, Now, Depth, Book, Queued;
    } rows[] = {
        {30, -11, 7, 0, 1},    {30, -10, 7, 0, 0},  {30, -11, 6, 0, 0},  {-179, -300, 7, 0, 1},
        {-180, -300, 7, 0, 0}, {600, 519, 7, 0, 1}, {600, 520, 7, 0, 0}, {30, -11, 7, 1, 0},
    };
    for (const auto& row : rows) {
        Restart();
        IterationDepth = row.Depth;
        Play(row.Before, row.Book != 0);
        Play(row.Now);
        EXPECT_EQ(LearningQueueCount, row.Queued) << row.Before << " " << row.Now << " " << row.Depth;
    }
    Restart();
    Play(30);
    ++ResignHistory[0].Key;
    Play(-90);
    EXPECT_EQ(LearningQueueCount, 0) << "the score before is of another game";
}

}  // namespace
