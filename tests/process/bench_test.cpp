#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/process/session.h"
#include "tests/support/datafile.h"

namespace {

long long NumberBehind(const std::string& line, const std::string& words) {
    const size_t place = line.find(words);
    return place == std::string::npos ? -1 : std::stoll(line.substr(place + words.size()));
}

// Reads the output of a bench to its end and expects the number of nodes that is on record. Every build,
// compiler and machine is compared with that one number.
void ExpectRecordedNodes(Engine& engine) {
    long long sum = 0, total = -1;
    for (const std::string& line : engine.ReadUntil("Nodes per second: ")) {
        if (line.starts_with("Position ")) sum += NumberBehind(line, ": ");
        if (line.starts_with("Nodes: ")) total = NumberBehind(line, "Nodes: ");
    }
    EXPECT_EQ(sum, total);
    EXPECT_EQ("nodes " + std::to_string(total), ReadDataLines("bench.txt").front())
        << "If search or evaluation were meant to change, the first line is the new one of bench.txt.";
}

TEST(BenchTest, CountsTheSameNodesAsAnArgument) {
    Engine engine(KESTROVAN_ENGINE, "", "bench");
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
        "e2e4\ngo depth 5\ngo mate 1 nodes 1000 searchmoves e7e5 depth 2");
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

TEST(BenchTest, EndsWhenToldAndLeavesTheGame) {
    Session engine;
    engine.Ask("force\ne2e4\ne7e5\ne1e2");
    const std::string show = "brd\nmvd\nmoves", shown = Join(engine.Ask(show));
    engine.Send("bench");
    engine.ReadUntil("Position 1: ");
    engine.Send("stop");
    engine.ReadUntil("Bench stopped");
    EXPECT_EQ(Join(engine.Ask(show)), shown);
    engine.Send("bench\nundo");
    engine.ReadUntil("Bench stopped");
    EXPECT_TRUE(HasLine(engine.Ask("mvd"), "castling flags = 15")) << "the line that ended it is carried out";
    engine.Send("bench\nquit");
    EXPECT_EQ(engine.WaitForExit(), 0);
}

TEST(BenchTest, IsTheOnlyArgument) {
    Engine engine(KESTROVAN_ENGINE, "", "benches");
    EXPECT_EQ(engine.ReadToEnd(), "") << "the usage line goes to the error stream";
    EXPECT_EQ(engine.WaitForExit(), 2);
}

}  // namespace
