#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/process/tooltest.h"

namespace {

// Games that end soon, each with a position or two that is quiet.
constexpr char GAMES[] = R"([Result "1-0"]

1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Qxf7# 1-0

[Result "0-1"]

1. f3 e5 2. g4 d6 3. h4 Be7 4. a3 h5 5. b3 Bxh4+ 6. Rxh4 Qxh4# 0-1

[Result "1/2-1/2"]

1. Nf3 Nf6 2. Ng1 Ng8 3. Nf3 Nf6 4. Ng1 Ng8 1/2-1/2

[Result "*"]

1. d4 *

[Result "1-0"]

1. e4 e4 1-0
)";

class TuneToolTest : public ToolTest {
  protected:
    TuneToolTest() : ToolTest(KESTROVAN_TUNE) {}

    void SetUp() override {
        directory_.WriteFile("games.pgn", GAMES);
        ASSERT_EQ(Run("sample games.pgn -o positions.epd --skip 0 --last 1 --each 1"), 0) << errors_;
    }

    // Few weights, so that it is soon done.
    static constexpr char FIT[] = "fit positions.epd --only Space,HangingPawn,KnightOutpost --held-back 20 ";

    std::vector<std::string> Lines(const std::string& file) const {
        std::vector<std::string> lines;
        std::istringstream text(directory_.ReadFile(file));
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        return lines;
    }
};

TEST_F(TuneToolTest, PositionsComeOutOfGames) {
    EXPECT_TRUE(Says("23 positions out of 5 games, of which 1 are broken and 1 without result")) << output_;
    const std::vector<std::string> lines = Lines("positions.epd");
    ASSERT_EQ(lines.size(), 23u);
    EXPECT_EQ(lines[0], "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - c9 \"1-0\"; id \"game 1\";");
    EXPECT_EQ(lines[8],
              "rnbqkbnr/pppp1ppp/8/4p3/8/5P2/PPPPP1PP/RNBQKBNR w KQkq - c9 \"0-1\"; id \"game 2\";");
    EXPECT_NE(lines[22].find("1/2-1/2"), std::string::npos);
}

TEST_F(TuneToolTest, FitsAndGoesOn) {
    EXPECT_EQ(Run(std::string(FIT) + "--rounds 1 --hold 1 --state state --curve curve.svg -o one.txt"), 0)
        << errors_;
    EXPECT_TRUE(Says("Round 1: fitted")) << output_;
    EXPECT_FALSE(Says("Round 2:"));
    EXPECT_TRUE(Says("What moved most"));
    EXPECT_EQ(Lines("one.txt").size(), 327u);
    EXPECT_EQ(directory_.ReadFile("curve.svg").rfind("<svg", 0), 0u);
    EXPECT_EQ(Run(std::string(FIT) + "--rounds 2 --hold 1 --state state -o two.txt --workers 1"), 0)
        << errors_;
    EXPECT_TRUE(Says("Going on behind round 1 of state")) << output_;
    EXPECT_EQ(Run(std::string(FIT) + "--rounds 2 --hold 1 --state state -o three.txt"), 0) << errors_;
    EXPECT_EQ(directory_.ReadFile("three.txt"), directory_.ReadFile("two.txt"));
    EXPECT_EQ(Run("compare two.txt"), 0);
    for (const std::string& line : Lines("output")) {
        EXPECT_TRUE(line.find("Space") != line.npos || line.find("HangingPawn") != line.npos ||
                    line.find("KnightOutpost") != line.npos)
            << line;
    }
    EXPECT_EQ(Run("error positions.epd --start two.txt"), 0);
    EXPECT_TRUE(Says("Fitted part:")) << output_;
    EXPECT_NE(Run("fit positions.epd --state state"), 0);
    EXPECT_NE(errors_.find("belongs to other positions, options or evaluations"), std::string::npos)
        << errors_;
}

TEST_F(TuneToolTest, AdoptedWeightsStandInTheList) {
    std::ostringstream list;
    list << std::ifstream(KESTROVAN_WEIGHT_LIST).rdbuf();
    directory_.WriteFile("list.inc", list.str());
    ASSERT_EQ(Run("list"), 0);
    const std::vector<std::string> names = Lines("output");
    std::string values;
    for (int i = 0; i < 327; ++i) values += std::to_string(1000 + i) + "\n";
    directory_.WriteFile("values.txt", values);
    EXPECT_EQ(Run("adopt values.txt list.inc"), 0) << errors_;
    const std::string adopted = directory_.ReadFile("list.inc");
    EXPECT_NE(adopted.find("\"two bishops; more for each pawn\", 1010, 1011)"), std::string::npos);
    EXPECT_NE(adopted.find("\"no pawns, minors\", 1326)"), std::string::npos);
    EXPECT_NE(adopted.find("// Mobility:"), std::string::npos);
    EXPECT_EQ(names.size(), 327u);
    const std::string longer = adopted + "\nWEIGHT(int, Extra, \"one more\", 77)\n";
    directory_.WriteFile("list.inc", longer);
    ExpectRefusal("adopt values.txt list.inc", "not the list of these weights");
    EXPECT_EQ(directory_.ReadFile("list.inc"), longer);
    EXPECT_NE(names[10].find("BishopPair[0]"), std::string::npos);
}

TEST_F(TuneToolTest, WeightsAreMixed) {
    const auto file = [](int value) {
        std::string text;
        for (int i = 0; i < 327; ++i) text += std::to_string(value) + "\n";
        return text;
    };
    directory_.WriteFile("a", file(100));
    directory_.WriteFile("b", file(200));
    directory_.WriteFile("c", file(20));
    EXPECT_EQ(Run("mix b:0.25 c:0.5 --start a -o d"), 0) << errors_;
    EXPECT_EQ(directory_.ReadFile("d"), file(100 + 25 - 40));
    for (const char* target : {"b", "b:", "b:x", "b:nan", ":0.5"}) {
        ExpectRefusal(std::string("mix --start a -o e ") + target, "is not FILE:SHARE");
    }
}

TEST_F(TuneToolTest, WhatCannotBeDoneIsSaid) {
    directory_.WriteFile("junk", "no position 1-0\n");
    directory_.WriteFile("short.txt", "1\n2\n");
    ExpectRefusal("fit absent.epd", "can't read absent.epd");
    ExpectRefusal("fit positions.epd --only Spice", "no weight of the name Spice");
    ExpectRefusal("fit positions.epd --only Space --keep Space", "nothing to fit");
    ExpectRefusal("fit positions.epd --start short.txt", "no file of 327 weights");
    ExpectRefusal("adopt short.txt short.txt", "no file of 327 weights");
    ExpectRefusal("sample absent.pgn -o positions.epd", "can't read absent.pgn");
    ExpectRefusal("sample games.pgn -o games.pgn", "games.pgn is read");
    ExpectRefusal("fit positions.epd -o positions.epd", "positions.epd is read");
    EXPECT_EQ(directory_.ReadFile("games.pgn"), GAMES);
    EXPECT_EQ(Lines("positions.epd").size(), 23u);
    EXPECT_NE(Run("fit junk"), 0);
    EXPECT_NE(errors_.find("there is nothing to fit to"), std::string::npos) << errors_;
    EXPECT_NE(Run("fit positions.epd -o absent/values.txt --only Space --rounds 1"), 0);
    EXPECT_NE(errors_.find("can't write absent/values.txt"), std::string::npos) << errors_;
}

}  // namespace
