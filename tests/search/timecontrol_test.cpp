#include "search/timecontrol.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>

#include "search/draws.h"
#include "search/modes.h"
#include "tests/support/datafile.h"

namespace {

class TimeControlTest : public testing::Test {
  protected:
    void TearDown() override {
        EngineTime = NO_CLOCK;
        MoveTime = OwnIncrement = MovesToGo = NodeLimit = GameSearches = UciMode = 0;
        OpponentTime = DrawScore = 0;
        SetNoTimeLimit();
    }
};

TEST_F(TimeControlTest, AllotsByTheTable) {
    for (const std::string& line : ReadDataLines("allocate_time.txt")) {
        if (line.front() == '#') continue;
        std::istringstream words(line);
        std::string dialect, colon;
        int plies = 0, target = 0, maximum = 0, interval = 0;
        words >> EngineTime >> MoveTime >> OwnIncrement >> MovesToGo >> dialect >> GameSearches >> plies >>
            colon >> target >> maximum >> interval;
        ASSERT_TRUE(words) << line;
        UciMode = dialect == "uci";
        AllocateTime(plies);
        EXPECT_EQ(TargetTime, target) << line;
        EXPECT_EQ(MaxTime, maximum) << line;
        EXPECT_EQ(PollInterval, interval) << line;
    }
}

TEST_F(TimeControlTest, AllotsSomethingForAnyClock) {
    const int values[] = {INT_MIN, -1, 0, 1, 100, INT_MAX};
    // Every combination, as the digits of a number.
    for (int i = 0; i < 2 * 6 * 6 * 6; ++i) {
        UciMode = i % 2;
        EngineTime = values[i / 2 % 6];
        OwnIncrement = values[i / 12 % 6];
        MovesToGo = values[i / 72];
        AllocateTime(1199);
        EXPECT_TRUE(TargetTime >= 1 && TargetTime <= NO_TIME_LIMIT && MaxTime <= NO_TIME_LIMIT) << i;
        EXPECT_TRUE(EngineTime <= 100 || MaxTime <= EngineTime / 2) << "more than half: " << i;
        NodeLimit = 4999;
        AllocateTime(0);
        EXPECT_LE(PollInterval, NodeLimit);
        NodeLimit = 0;
    }
}

// Own clock, opponent's, increment, moves to go, and the draw score that they lead to from 0.
TEST_F(TimeControlTest, ShortOfTimeButAheadADrawIsWelcome) {
    const struct {
        int Own, Opponent, Increment, Moves, Score;
    } rows[] = {
        {6000, 0, 0, 0, 0},         // the opponent's clock is unknown
        {6000, 2848, 0, 0, 5},      // less than half of what is left without the reserve
        {6000, 2849, 0, 0, 0},      // half of it
        {400, 100, 0, 0, 9},        // 380, in tenths of 250: entry 15
        {100, 10, 0, 0, 0},         // ahead by 85 only, of 125
        {200, 10, 0, 0, 17},        // 190: entry 7
        {6000, 1000, 5000, 0, 5},   // a unit of 250, for a twentieth of the opponent's clock is less
        {40000, 10000, 500, 0, 5},  // a unit of 500
        {1200, 60, 100, 0, 5},     {6000, 1000, 0, 40, 0},  // the next control will bring more
        {400, 100, 0, 40, 9},
    };
    for (const auto& [own, opponent, increment, moves, score] : rows) {
        DrawScore = 0;
        EngineTime = own;
        OpponentTime = opponent;
        OwnIncrement = increment;
        MovesToGo = moves;
        AllocateTime(10);
        EXPECT_EQ(DrawScore, score) << own << " " << opponent << " " << increment << " " << moves;
    }
    DrawScore = 7;
    OpponentTime = EngineTime = 6000;
    AllocateTime(10);
    EXPECT_EQ(DrawScore, 7) << "left as it is";
}

}  // namespace
