#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

#include "frontend/commands.h"
#include "frontend/tokens.h"

namespace {

// The commands that take a line, separated by commas; - for none.
std::string Takers(const std::string& line) {
    std::string takers;
    for (const Command* command : FindCommands(line.c_str())) {
        takers += (takers.empty() ? "" : ",") +
                  std::string(command->Keyword == nullptr ? "<move>" : command->Keyword);
    }
    return takers.empty() ? "-" : takers;
}

TEST(KeywordsTest, TheOrderOfTheChainDecides) {
    // A line and what takes it.
    std::istringstream rows(
        "n>new|no>nopost|p>pgneval,post|pos>post|pond>ponderhit|per>perft|w>writevalues,white|wh>white|re>"
        "reload|"
        "rem>remove|res>reset|resets>reset|result "
        "1-0>-|s>sd|set>setoption|stop>st|ucinewgame>uci|u>undo|uc>uci|"
        "ponderhit>ponderhit|po>post|posi>position|position "
        "startpos>position|fritz>fritz|fo>force|f>force|g>go|"
        "d>demo|deb>debug|ti>time|tim 5>-|timer 300>time|o>otime|otim "
        "5>otim|otim>otime|t>time|b>black|br>brd|"
        "bk>bkm|is>isready|mv>mvd|m>moves|m2 "
        "7>m2|c>clean|c2>c2|computer>computer|comp>computer|pi>ping|pr>protover|setb>setboard|use>usermove|e>"
        "edit|eg>egtbstat|ep>epdevl|ea>easy|"
        "ev>evl|h>help|ha>hard|l>level|lo>loadfen|a>analyze|a1>-|x>xboard|A1h8><move>| a1h8>-|i1a1>-|a0a1>-|"
        "e2e9>-|e2 e4>-|B8C6 and more><move>|  BRD>brd|\tbrd>-|>-|   >-|d2d4><move>|c3c2><move>|be>bench|"
        "Bench>bench|benches>bench|bend>-|GO depth "
        "3>go|xyz>-|Quick>q|hi>hint|dr>draw|draws>draw|resu>-|egt>egtbstat|egtp>egtpath|mem>memory|na>name");
    for (std::string row; std::getline(rows, row, '|');) {
        const size_t end = row.find('>');
        EXPECT_EQ(Takers(row.substr(0, end)), row.substr(end + 1)) << row;
    }
}

TEST(TokenizeTest, CutsAtSeparatorsAndBearsLongLines) {
    EXPECT_EQ(Tokenize("level 40 5:30 2", " :"), 5);
    EXPECT_STREQ(Tokens[3], "30");
    EXPECT_EQ(TokenOffset[3], 11);
    EXPECT_EQ(Tokenize("q ", " "), 2) << "the empty token behind the blank counts";
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
