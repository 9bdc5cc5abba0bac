#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include "tests/process/session.h"
#include "tests/support/datafile.h"

namespace {

// Two programs that are told the same say the same, move for move and node for node.
TEST(SearchesTest, RepeatThemselvesInAnotherProcess) {
    std::string said[2];
    for (std::string& output : said) {
        UciSession engine;
        std::string game = "position startpos moves";
        for (int ply = 0; ply < 12; ++ply) {
            if (ply == 6) engine.Ask("setoption name MultiPV value 3");
            engine.Send(game + "\ngo depth 8");
            const std::string lines = Join(engine.ReadUntil("bestmove "));
            output += std::regex_replace(lines, std::regex(" (time|nps) \\d+"), "");
            game += " " + SplitWords(lines.substr(lines.rfind("bestmove "))).at(1);
        }
    }
    EXPECT_EQ(said[0], said[1]);
    EXPECT_GT(std::count(said[0].begin(), said[0].end(), '\n'), 50);
}

// Every fifth of the mates of each length, some by quiet moves: found when asked for, not when one too short
// is.
TEST(SearchesTest, MateSearchesFindTheirMateOrEnd) {
    const std::vector<std::string> rows = ReadDataLines("mates.txt");
    UciSession engine;
    for (size_t i = 0; i < rows.size(); i += 5) {
        const int moves = std::atoi(rows[i].c_str());
        for (const int asked : {moves - 1, moves}) {
            if (asked == 0) continue;
            engine.Send("setoption name Clear Hash\nposition fen " + rows[i].substr(2));
            engine.Send("go mate " + std::to_string(asked));
            const std::string lines = Join(engine.ReadUntil("bestmove "));
            const bool isFound =
                lines.find(" score mate " + std::to_string(moves) + " ") != std::string::npos;
            EXPECT_EQ(isFound, asked == moves) << rows[i] << "\n" << lines;
        }
    }
}

}  // namespace
