#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <regex>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/process/session.h"
#include "tests/process/xboardgame.h"
#include "tests/support/datafile.h"

namespace {

TEST(GamesTest, XboardGamesEndByTheirOwnResultLine) {
    const std::string fight = "ResignValue = 32767";
    const struct {
        std::string SetUp, Settings, Result;
    } rows[] = {
        {"sd 3", fight, ""},
        {"loadfen qq2k3/8/8/8/8/8/P7/4K3 w - -\nsd 5", fight, "0-1 {Black mates}"},
        {"loadfen 7k/5Q2/8/6K1/8/8/8/8 w - -\nsd 2\nforce\ng5g6\n", fight, "1/2-1/2 {Stalemate}"},
        {"loadfen 4k3/8/8/8/8/8/8/4KB2 w - -\nsd 2", fight, "1/2-1/2 {Draw by insufficient material}"},
        {"loadfen qq2k3/8/8/8/8/8/P7/4K3 w - -\nsd 3", "ResignValue = 500\nResignTimes = 2", "resign"},
    };
    for (const auto& [setUp, settings, result] : rows) {
        const std::string line = PlayXboardGame(setUp, settings, settings).Result;
        EXPECT_TRUE(IsGameResult(line) && line.starts_with(result)) << setUp << ": " << line;
    }
}

// Two programs that are told the same say the same, move for move and node for node.
TEST(GamesTest, RepeatThemselvesInAnotherProcess) {
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

// Knights out and back again, longer than the record of a game, and one out once more.
TEST(GamesTest, SixHundredMoves) {
    std::string position = "position startpos moves", record = "force\nnopost\n", back;
    for (int i = 0; i < 1201; ++i) {
        const std::string move = std::array{"g1f3", "b8c6", "f3g1", "c6b8"}[i % 4];
        position += " " + move;
        record += move + "\n";
        back += "undo\n";
    }
    Session referee;
    const std::string start = Join(referee.Ask("brd")), moved = Join(referee.Ask("force\ng1f3\nbrd"));
    UciSession uci;
    EXPECT_EQ(Join(uci.Ask(position + "\nbrd")), moved);
    EXPECT_TRUE(referee.Ask(uci.BestMove("go depth 5")).empty()) << "a legal move";

    Session console("Pondering = off");
    EXPECT_EQ(Join(console.Ask(record + "brd\nundo\nbrd")), moved + start);
    // What is kept can be taken back, the rest can't, and the game goes on.
    const std::string kept = Join(console.Ask(back + "brd"));
    console.Send("sd 4\ngo");
    console.ReadUntil("move ");
    EXPECT_EQ(Join(console.Ask("undo\nbrd")), kept);
}

}  // namespace
