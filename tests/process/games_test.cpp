#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

constexpr int PLY_LIMIT = 700;  // of a game

// The legal moves of the engine's position as coordinates, without promotion letters.
std::vector<std::string> LegalMoves(Engine& engine) {
    std::vector<std::string> moves;
    for (const std::string& line : engine.Ask("moves")) {
        if (line.find(" (") == std::string::npos) continue;
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            if (word.front() != '(') moves.push_back(word.substr(1));
        }
    }
    return moves;
}

bool Contains(const std::vector<std::string>& moves, const std::string& move) {
    return std::find(moves.begin(), moves.end(), move.substr(0, 4)) != moves.end();
}

bool IsResult(const std::string& line) {
    return line.starts_with("1-0 {") || line.starts_with("0-1 {") || line.starts_with("1/2-1/2 {") ||
           line == "resign";
}

// An xboard game from the set-up on between two engines that get each other's moves, up to the first result
// line, which is returned. `moves` becomes what was played.
std::string PlayXboardGame(const std::string& setUp, const std::string& settings,
                           std::vector<std::string>& moves) {
    Session one(settings), other(settings);
    for (Session* engine : {&one, &other}) engine->Ask("xboard\neasy\nnopost\nnew\n" + setUp);
    one.Send("go");
    while (moves.size() < PLY_LIMIT) {
        Session& mover = moves.size() % 2 == 0 ? one : other;
        std::string line = mover.ReadLine();
        while (!line.starts_with("move ")) {
            if (IsResult(line)) return line;
            if (line.starts_with("Illegal")) throw std::runtime_error(line);
            line = mover.ReadLine();
        }
        moves.push_back(line.substr(5));
        (&mover == &one ? other : one).Send(moves.back());
    }
    return "too long";
}

TEST(GamesTest, XboardGamesEndByTheirOwnResultLine) {
    const std::string fight = "ResignValue = 32767";
    const struct {
        std::string SetUp, Settings, Result;
    } rows[] = {
        {"sd 3", fight, ""},
        {"loadfen r3k2r/pppq1ppp/2npbn2/2b1p3/2B1P3/2NPBN2/PPPQ1PPP/R3K2R w KQkq -\nsd 4", fight, ""},
        {"loadfen 4k3/8/8/8/8/8/8/QQ2K3 w - -\nsd 5", fight, "1-0 {White mates}"},
        {"loadfen qq2k3/8/8/8/8/8/P7/4K3 w - -\nsd 5", fight, "0-1 {Black mates}"},
        {"loadfen 7k/5Q2/8/6K1/8/8/8/8 w - -\nsd 2\nforce\ng5g6\n", fight, "1/2-1/2 {Stalemate}"},
        {"loadfen 4k3/8/8/8/8/8/8/4KB2 w - -\nsd 2", fight, "1/2-1/2 {Draw by insufficient material}"},
        {"loadfen qq2k3/8/8/8/8/8/P7/4K3 w - -\nsd 3", "ResignValue = 500\nResignTimes = 2", "resign"},
    };
    for (const auto& [setUp, settings, result] : rows) {
        std::vector<std::string> moves;
        const std::string line = PlayXboardGame(setUp, settings, moves);
        EXPECT_TRUE(IsResult(line)) << setUp << ": " << line;
        EXPECT_TRUE(line.starts_with(result)) << setUp << ": " << line;
        // A third engine has no objection either.
        Session referee;
        std::string record = "force\n" + setUp + "\nforce\n";
        for (const std::string& move : moves) record += move + "\n";
        EXPECT_FALSE(HasLine(referee.Ask(record), "Illegal move")) << record;
    }
}

TEST(GamesTest, UciGameIsLegalThroughout) {
    UciSession engines[2];
    std::string position =
        "position fen r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq - moves";
    int ply = 0;
    for (; ply < 200; ++ply) {
        Session &mover = engines[ply % 2], &checker = engines[1 - ply % 2];
        checker.Ask(position);
        const std::vector<std::string> legal = LegalMoves(checker);
        if (legal.empty()) break;
        const std::string move = mover.BestMove(position + "\ngo depth 3");
        ASSERT_TRUE(Contains(legal, move)) << move << " after " << position;
        position += " " + move;
    }
    EXPECT_GT(ply, 10);
}

// A UCI game without mercy: the stronger side wins by mate before the moves run out.
TEST(GamesTest, UciGameEndsByMate) {
    UciSession engine;
    std::string position = "position fen 4k3/8/8/8/8/8/8/R3K2R w - - moves";
    for (int ply = 0; ply < 60; ++ply) {
        engine.Ask(position);
        if (LegalMoves(engine).empty()) {
            EXPECT_EQ(ply % 2, 1) << "Black is mated: " << position;
            EXPECT_TRUE(engine.Ask("go depth 3").empty()) << "nothing to announce in this dialect";
            return;
        }
        position += " " + engine.BestMove("go depth 6");
    }
    FAIL() << "no mate: " << position;
}

// Knights out and back again, longer than the record of a game.
std::vector<std::string> LongGame() {
    constexpr int MOVES = 600;
    std::vector<std::string> moves;
    for (int move = 0; move < MOVES; ++move) {
        moves.push_back(move % 2 == 0 ? "g1f3" : "f3g1");
        moves.push_back(move % 2 == 0 ? "b8c6" : "c6b8");
    }
    return moves;
}

TEST(GamesTest, SixHundredMovesOverUci) {
    UciSession engine, fresh;
    std::string position = "position startpos moves";
    for (const std::string& move : LongGame()) position += " " + move;
    engine.Ask(position);
    EXPECT_EQ(Join(engine.Ask("brd")), Join(fresh.Ask("brd")));
    EXPECT_TRUE(Contains(LegalMoves(fresh), engine.BestMove("go depth 5")));
    // One ply more: the last move counts, too.
    engine.Ask(position + " g1f3");
    EXPECT_EQ(Join(engine.Ask("brd")), Join(fresh.Ask("position startpos moves g1f3\nbrd")));
    EXPECT_TRUE(Contains(LegalMoves(fresh), engine.BestMove("go depth 5")));
}

TEST(GamesTest, SixHundredMovesAtTheConsole) {
    Session engine("Pondering = off"), fresh;
    std::string record = "force\nnopost\n";
    for (const std::string& move : LongGame()) record += move + "\n";
    EXPECT_TRUE(engine.Ask(record).empty());
    EXPECT_EQ(Join(engine.Ask("brd")), Join(fresh.Ask("brd")));
    // What is kept can be taken back, the rest can't, and the game goes on.
    EXPECT_EQ(Join(engine.Ask("undo\nundo\nundo\nbrd")), Join(fresh.Ask("force\ng1f3\nbrd")));
    std::string back;
    for (int i = 0; i < 1300; ++i) back += "undo\n";
    EXPECT_TRUE(engine.Ask(back).empty());
    const std::vector<std::string> legal = LegalMoves(engine);
    engine.Send("sd 4\ngo");
    EXPECT_TRUE(Contains(legal, engine.ReadUntil("move ").back().substr(5)));
}

TEST(GamesTest, DemoPlaysUntilALineComes) {
    Session engine("Pondering = off");
    engine.Send("nopost\ntime 100\nst 0\nsd 2\ndemo");
    for (int i = 0; i < 2; ++i) engine.ReadUntil("move ");
    engine.Send("mvd");
    EXPECT_EQ(engine.ReadUntil("castling flags").back().find("castling flags = "), 0u);
    EXPECT_TRUE(engine.Ask("").empty()) << "it has ended";
}

}  // namespace
