#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "tests/process/session.h"
#include "tests/support/datafile.h"

namespace {

// Reads the output of a bench to its end and expects the number of nodes that is on record. Every build,
// compiler and machine is compared with that one number.
void ExpectRecordedNodes(Engine& engine) {
    long long sum = 0, total = -1;
    for (const std::string& line : engine.ReadUntil("Nodes per second: ")) {
        const auto number = [&] { return std::stoll(line.substr(line.find(": ") + 2)); };
        if (line.starts_with("Position ")) sum += number();
        if (line.starts_with("Nodes: ")) total = number();
    }
    EXPECT_EQ(sum, total);
    EXPECT_EQ("nodes " + std::to_string(total), ReadDataLines("bench.txt").front())
        << "If search or evaluation were meant to change, the first line is the new one of bench.txt.";
}

TEST(BenchTest, CountsTheSameNodesAsAnArgument) {
    Engine engine(EnginePath(), "", "bench");
    engine.Send("quit");  // read by nobody
    ExpectRecordedNodes(engine);
    EXPECT_EQ(engine.ReadToEnd(), "");
    EXPECT_EQ(engine.WaitForExit(), 0);
}

// Twice as long again under the sanitizers, and nothing new for them.
#ifndef KESTROVAN_SANITIZED
TEST(BenchTest, CountsTheSameNodesWhateverCameBefore) {
    Session engine("TranspositionSizeMb = 3\nCowardice = 300\nPawnHashSizeMb = 0");
    engine.BestMove(
        "uci\nsetoption name Aggressivity value 300\nsetoption name Tropism value 0\nposition startpos moves "
        "e2e4\ngo depth 5\ngo mate 1 nodes 1000 searchmoves e7e5 depth 2\nsetoption name MultiPV value 3");
    engine.Send("bench");
    ExpectRecordedNodes(engine);
    engine.Send("xboard\nnew\nfritz\nsd 3\nst 1\nnopost\nsetoption name Hash value 0\ntime 5\nhard\ne2e4");
    engine.ReadUntil("move ");
    engine.Send("bench");
    ExpectRecordedNodes(engine);
    engine.ReadToEnd();
    EXPECT_EQ(engine.WaitForExit(), 0);
}
#endif

// Game, settings and modes: what follows is the same as without the bench.
TEST(BenchTest, EndsWhenToldAndLeavesAllElse) {
    const std::regex clock("(\n\\d+ -?\\d+| time| nps) \\d+");
    for (const std::string before : {"force\ne2e4\ne7e5\ne1e2\nsd 5",
                                     "uci\nsetoption name MultiPV value 2\nposition startpos moves e2e4"}) {
        const bool isUci = before.starts_with("uci");
        std::string said[2];
        for (const bool hasBench : {false, true}) {
            Session engine(
                "TranspositionSizeMb = 64\nPawnHashSizeMb = 32\nAggressivity = 30\nCowardice = 40\nTropism = "
                "250\nPondering = off");
            engine.Ask(before);
            if (hasBench) {
                engine.Send("bench");
                engine.ReadUntil("Position 1: ");
                engine.Send("stop");
                engine.ReadUntil("Bench stopped");
            }
            const std::string board = Join(engine.Ask("brd\nmvd\nmoves\nevl"));
            engine.Send(isUci ? "go depth 6" : "go");
            const std::string search = Join(engine.ReadUntil(isUci ? "bestmove " : "move "));
            said[hasBench] = board + std::regex_replace("\n" + search, clock, "$1");
        }
        EXPECT_EQ(said[0], said[1]);
    }
    Session engine;
    engine.Ask("force\ne2e4\ne7e5\ne1e2");
    engine.Send("bench\nundo");
    engine.ReadUntil("Bench stopped");
    EXPECT_TRUE(HasLine(engine.Ask("mvd"), "castling flags = 15")) << "the line that ended it is carried out";
    engine.Send("bench\nquit");
    EXPECT_EQ(engine.WaitForExit(), 0);
}

TEST(BenchTest, IsTheOnlyArgument) {
    Engine engine(EnginePath(), "", "benches");
    EXPECT_EQ(engine.ReadToEnd(), "") << "the usage line goes to the error stream";
    EXPECT_EQ(engine.WaitForExit(), 2);
}

}  // namespace
