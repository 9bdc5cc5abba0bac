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
    void SetUp() override { Reset(); }
    void TearDown() override { Reset(); }

    static void Reset() {
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
    const int values[] = {INT_MIN, -1000, -1, 0, 1, 2, 100, INT_MAX};
    for (const int uci : {0, 1}) {
        for (const int clock : values) {
            for (const int increment : values) {
                for (const int moves : values) {
                    UciMode = uci;
                    EngineTime = clock;
                    OwnIncrement = increment;
                    MovesToGo = moves;
                    AllocateTime(1199);
                    EXPECT_GE(TargetTime, 1);
                    EXPECT_LE(TargetTime, NO_TIME_LIMIT);
                    EXPECT_LE(MaxTime, NO_TIME_LIMIT);
                    // Never more than half of what is there.
                    EXPECT_TRUE(clock <= 100 || MaxTime <= clock / 2)
                        << clock << " " << increment << " " << moves;
                }
            }
        }
    }
}

TEST_F(TimeControlTest, LooksAtTheLimitInTime) {
    for (const int nodes : {1, 100, 4999, 60000}) {
        NodeLimit = nodes;
        MoveTime = 1000;
        AllocateTime(0);
        EXPECT_LE(PollInterval, nodes);
        SetNoTimeLimit();
        EXPECT_LE(PollInterval, nodes);
    }
}

}  // namespace
