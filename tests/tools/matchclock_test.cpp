#include "tools/matchclock.h"

#include <gtest/gtest.h>

namespace {

TEST(MatchClock, ChargesEachSideAndGivesTheIncrement) {
    MatchLimits limits;
    limits.BaseMs = 2000;
    limits.IncrementMs = 20;
    MatchClock clock(limits);
    clock.Charge(WHITE, 500);
    EXPECT_EQ(clock.GoLine(), "go wtime 1520 btime 2000 winc 20 binc 20");
    clock.Charge(BLACK, 2000 + MatchClock::MARGIN_MS);
    EXPECT_EQ(clock.GoLine(), "go wtime 1520 btime 20 winc 20 binc 20") << "what was forgiven is not owed";
    EXPECT_EQ(clock.LimitMs(BLACK), 20 + MatchClock::MARGIN_MS);
    EXPECT_EQ(clock.LimitMs(WHITE), 1520 + MatchClock::MARGIN_MS);

    MatchLimits nodes;
    nodes.Nodes = 100;
    EXPECT_EQ(MatchClock(nodes).GoLine(), "go nodes 100");
    EXPECT_EQ(MatchClock(nodes).LimitMs(WHITE), std::nullopt);
}

}  // namespace
