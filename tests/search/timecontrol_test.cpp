#include "search/timecontrol.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>

#include "search/modes.h"
#include "tests/support/datafile.h"

namespace {

class TimeControlTest : public testing::Test {
  protected:
    void TearDown() override {
        EngineTime = NO_CLOCK;
        MoveTime = OwnIncrement = MovesToGo = NodeLimit = GameSearches = UciMode = 0;
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

}  // namespace
