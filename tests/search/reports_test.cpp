#include "search/reports.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "core/makemove.h"
#include "search/search.h"
#include "tests/search/searchtest.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"

namespace {

// What is printed, with the figures of the clock blanked.
std::string Printed(const std::function<void()>& print) {
    testing::internal::CaptureStdout();
    print();
    std::string text = testing::internal::GetCapturedStdout();
    for (const std::string word : {" time ", " nps "}) {
        for (size_t i = text.find(word); i != std::string::npos; i = text.find(word, i + 1)) {
            const size_t number = i + word.size();
            text.replace(number, text.find_first_not_of("0123456789", number) - number, "#");
        }
    }
    return text;
}

class ReportsTest : public SearchTest {
  protected:
    static void Prepare(const char* fen) {
        StartSearchClock();
        LoadFEN(fen);
        PrepareRoot();
        IterationDepth = 6;
        MaxPlyReached = 12;
        CurrentRootMove = 1;
        HashWrites = 1 << 13;
        TablebaseHits = 3;
    }

    // Leaves a line in the table and makes it the best.
    static void Remember(const std::string& moves) {
        for (const std::string& text : SplitWords(moves)) {
            HashStore(60, TextToMove(text.c_str()), 0, BOUND_EXACT, 0, 0, 0);
            MakeMove(TextToMove(text.c_str()), 1);
        }
        while (HistoryLength > 0) UnmakeMove();
        ShiftRootMove(FindRootMove(TextToMove(moves.substr(0, 4).c_str())), 0);
    }
};

TEST_F(ReportsTest, ScoresOfBothDialects) {
    Prepare(START);
    Remember("e2e4 e7e5");
    Nodes = 70'000;
    const std::string rest = "nodes 70000 time # hashfull 500 nps # tbhits 3";
    const auto expectScore = [&](int score, const std::string& uci, const std::string& console) {
        RootScore = score;
        for (const int bound : {BOUND_NONE, BOUND_UPPER, BOUND_LOWER}) {
            const std::string word[] = {"", "upperbound ", "lowerbound "};
            EXPECT_EQ(Printed([=] { PrintUciInfo(1, bound, 1); }),
                      "info depth 7 seldepth 12 score " + (uci + word[bound]) + rest + " pv e2e4 e7e5\n");
        }
        const std::string line = Printed(PrintThinkingLine);
        EXPECT_TRUE(line.starts_with("7 " + console + " ") && line.ends_with(" 70000 e2e4 e7e5\n")) << line;
    };
    expectScore(32695, "mate 3 ", "32762");
    expectScore(32699, "mate 1 ", "32766");
    expectScore(-32696, "mate -2 ", "-32763");
    expectScore(31001, "mate 850 ", "31068");
    expectScore(-31000, "cp -31000 ", "-31000");
    MateSearch = 2;
    expectScore(32697, "mate 2 ", "32764");
    expectScore(32695, "cp 0 ", "32762");  // not the mate that is sought
    EXPECT_EQ(Printed([] { PrintUciInfo(1, BOUND_NONE, 0); }), "info depth 7 seldepth 12 score cp 0 " + rest +
                                                                   " currmove " + MoveToText(RootMove(1)) +
                                                                   " currmovenumber 2\n");
}

TEST_F(ReportsTest, HoldBackUntilThereIsMuchToSay) {
    Prepare(START);
    PostMode = 1;
    Nodes = 0;
    Printed([] { PrintUciInfo(1, BOUND_NONE, 1); });
    for (const bool isMuch : {false, true}) {
        Nodes = isMuch ? 200'001 : 20'000;
        EXPECT_EQ(Printed([] { PrintUciInfo(0, BOUND_NONE, 1); }).empty(), !isMuch);
        EXPECT_EQ(Printed([] { PrintMultiPv(0, BOUND_NONE); }).empty(), !isMuch);
        EXPECT_EQ(Printed([] { PrintThinking(0); }).empty(), !isMuch);
        EXPECT_EQ(Printed(PrintNodeRate), isMuch ? "info nps # nodes 200001 tbhits 3 hashfull 500\n" : "");
    }
    Nodes = 5;
    EXPECT_NE(Printed([] { PrintUciInfo(0, BOUND_NONE, 1); }), "") << "a new count has begun";
    PostMode = 0;
    EXPECT_EQ(Printed([] { PrintThinking(1); }), "");
}

TEST_F(ReportsTest, AllLinesTakeTheKindOfTheFirst) {
    Prepare(START);
    Remember("d2d4 d7d5 c2c4");
    Remember("e2e4 e7e5");
    MultiPvCount = 2;
    Nodes = 60'000;
    RootScores[1] = 150;
    const std::string head = " depth 7 seldepth 12 score ",
                      state =
                          "nodes 60000 time # hashfull 500 nps # tbhits 3 currmove d2d4 currmovenumber 2 pv ";
    const std::string rows[] = {"mate 2 ", "mate 16275 ", "cp 160 ", "cp 150 "};
    for (const int i : {0, 2}) {
        RootScore = i == 0 ? 32697 : 160;
        EXPECT_EQ(Printed([] { PrintMultiPv(1, BOUND_LOWER); }),
                  "info multipv 1" + head + rows[i] + state + "e2e4 e7e5\ninfo multipv 2" + head +
                      rows[i + 1] + "lowerbound " + state + "d2d4 d7d5 c2c4\n");
    }
    EXPECT_EQ(PonderMove, TextToMove("e7e5")) << "the reply to the best line";
}

TEST_F(ReportsTest, VariationsAreLegalAndEnd) {
    Prepare(START);
    Remember("g1f3 g8f6 f3g1 f6g8");
    EXPECT_EQ(Printed([] { PrintPv(0); }).size(), 21 * 5u) << "twenty further moves";
    Prepare(CASTLING_IN_CHECK);
    Remember("e8d7 e1h1");
    EXPECT_EQ(Printed([] { PrintPv(0); }), " e8d7") << "what is not legal isn't shown";
    EXPECT_EQ(PonderMove, NO_MOVE);
}

}  // namespace
