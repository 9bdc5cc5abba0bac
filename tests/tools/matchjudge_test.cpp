#include "tools/matchjudge.h"

#include <gtest/gtest.h>

namespace {

// After how many plies the game is over, when White says one thing and Black another, each from its own view;
// 0 when it goes on.
int EndOf(std::optional<int> white, std::optional<int> black, int points) {
    MatchJudge judge;
    for (int plies = 1; plies <= 200; ++plies) {
        judge.Look(plies % 2 == 1 ? white : black, plies % 2 == 1 ? WHITE : BLACK, plies);
        if (judge.WhitePoints()) {
            EXPECT_EQ(*judge.WhitePoints(), points) << plies;
            return plies;
        }
    }
    return 0;
}

TEST(MatchJudge, EndsGamesThatBothAgreeAbout) {
    EXPECT_EQ(EndOf(700, -700, 2), 8);
    EXPECT_EQ(EndOf(-30000, 30000, 0), 8);
    EXPECT_EQ(EndOf(10, 10, 1), 80 + 15) << "not before move 40";
    EXPECT_EQ(EndOf(-10, 0, 1), 95);
    for (const auto& [white, black] : {std::pair{700, -699}, {700, 700}, {11, 0}, {0, 11}}) {
        EXPECT_EQ(EndOf(white, black, -1), 0) << white << ' ' << black;
    }
    EXPECT_EQ(EndOf(700, std::nullopt, -1), 0);
    EXPECT_EQ(EndOf(std::nullopt, 0, -1), 0);
}

}  // namespace
