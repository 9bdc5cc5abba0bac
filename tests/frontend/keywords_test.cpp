#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/commands.h"
#include "frontend/tokens.h"
#include "tests/support/datafile.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    // The last part may be empty.
    if (text.empty() || text.back() == separator) parts.emplace_back();
    return parts;
}

// The commands that take a line, separated by commas; - for none.
std::string Takers(const std::string& line) {
    std::string takers;
    for (const Command* command : FindCommands(line.c_str())) {
        takers += (takers.empty() ? "" : ",") +
                  std::string(command->Keyword == nullptr ? "<move>" : command->Keyword);
    }
    return takers.empty() ? "-" : takers;
}

TEST(KeywordsTest, LinesAreTakenAndCutByTheTable) {
    for (const std::string& row : ReadDataLines("keywords.txt")) {
        const std::vector<std::string> fields = Split(row, '\t');
        ASSERT_EQ(fields.size(), 4u) << row;
        const std::string& line = fields[0];
        // What a taker that ends the program leaves to others doesn't matter.
        const std::string takers = Takers(line);
        EXPECT_TRUE(takers == fields[1] || (fields[1] == "q" && takers.starts_with("q,")) ||
                    (fields[1] == "pgneval" && takers.starts_with("pgneval,")))
            << line << ": " << takers;
        const std::vector<std::string> tokens = Split(fields[2], '|'), offsets = Split(fields[3], ',');
        ASSERT_EQ(Tokenize(line.c_str(), " "), static_cast<int>(tokens.size())) << line;
        for (size_t i = 0; i < tokens.size(); ++i) {
            EXPECT_EQ(Tokens[i], tokens[i]) << line;
            EXPECT_TRUE(offsets[i] == "-" || std::to_string(TokenOffset[i]) == offsets[i]) << line;
        }
    }
}

TEST(KeywordsTest, TheOrderOfTheChainDecides) {
    // A line and what takes it.
    const std::string rows =
        "n>new|no>nopost|p>pgneval,post|w>writevalues,white|wh>white|re>reload|rem>remove|"
        "res>reset|stop>st|ucinewgame>uci|u>undo|uc>uci|ponderhit>ponderhit|po>post|posi>position|"
        "position startpos>position|fritz>fritz|fo>force|f>force|g>go|d>demo|de>demo|deb>debug|"
        "ti>time|o>otime|otim 5>otim|otim>otime|t>time|b>black|br>brd|bk>bkm|is>isready|mv>mvd|"
        "mo>moves|c>clean|c2>c2|eg>egtbstat|ep>epdevl|ea>easy|l>level|lo>loadfen|a>analyze|a1>-|"
        "A1h8><move>| a1h8>-|i1a1>-|a0a1>-|B8C6 and more><move>|  BRD>brd|\tbrd>-|>-|   >-|"
        "d2d4><move>|c3c2><move>|be>bench|ben>bench|Bench>bench|benches>bench|bend>-|GO depth 3>go|xyz>-";
    for (const std::string& row : Split(rows, '|')) {
        const size_t end = row.find('>');
        EXPECT_EQ(Takers(row.substr(0, end)), row.substr(end + 1)) << row;
    }
}

TEST(TokenizeTest, CutsAtSeparatorsAndBearsLongLines) {
    EXPECT_EQ(Tokenize("level 40 5:30 2", " :"), 5);
    EXPECT_STREQ(Tokens[3], "30");
    EXPECT_EQ(TokenOffset[3], 11);
    EXPECT_EQ(Tokenize("", " "), 1);
    EXPECT_STREQ(Tokens[1], "") << "tokens of the line before are gone";
    EXPECT_EQ(Tokenize((std::string(5000, 'y') + " z").c_str(), " "), 2);
    EXPECT_EQ(std::strlen(Tokens[0]), static_cast<size_t>(TOKEN_LENGTH - 1));
    EXPECT_EQ(TokenOffset[1], 5001);
    std::string many;
    for (int i = 0; i < 5000; ++i) many += std::to_string(i) + " ";
    EXPECT_LE(Tokenize(many.c_str(), " "), TOKEN_LIMIT);
    EXPECT_EQ(TokenNumber(2000), 2000);
    EXPECT_EQ(TokenNumber(1'000'000), 0);
    SetInputLine(std::string(LINE_LIMIT + 100, 'x'));
    EXPECT_EQ(std::strlen(InputLine), LINE_LIMIT);
}

}  // namespace
