#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
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
    return line == "resign" || std::regex_match(line, std::regex("(1-0|0-1|1/2-1/2) \\{.*\\}"));
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

// A whole game over UCI: the one that waits gives the legal moves of the one that moves.
TEST(GamesTest, UciGamesAreLegalAndEndByMate) {
    for (const char* fen : {"r3k2r/pppq1ppp/8/8/8/8/8/4K3 b kq -", "4k3/8/8/8/8/8/PPPP4/R3K3 w Q -"}) {
        UciSession engines[2];
        std::string position = "position fen " + std::string(fen) + " moves";
        int ply = 0;
        for (; ply < 120; ++ply) {
            Session &mover = engines[ply % 2], &checker = engines[1 - ply % 2];
            checker.Ask(position);
            const std::vector<std::string> legal = LegalMoves(checker);
            if (legal.empty()) break;
            const std::string move = mover.BestMove(position + "\ngo depth 6");
            ASSERT_TRUE(Contains(legal, move)) << move << " after " << position;
            position += " " + move;
        }
        EXPECT_TRUE(ply > 4 && ply % 2 == 1) << "the side that began mates: " << position;
        EXPECT_TRUE(engines[0].Ask("go depth 3").empty()) << "nothing to announce in this dialect";
    }
}

// Knights out and back again, longer than the record of a game, and one out once more.
std::vector<std::string> LongGame() {
    std::vector<std::string> moves;
    for (int i = 0; i < 300; ++i) moves.insert(moves.end(), {"g1f3", "b8c6", "f3g1", "c6b8"});
    moves.push_back("g1f3");
    return moves;
}

TEST(GamesTest, SixHundredMovesOverUci) {
    UciSession engine, fresh;
    std::string position = "position startpos moves";
    for (const std::string& move : LongGame()) position += " " + move;
    engine.Ask(position);
    EXPECT_EQ(Join(engine.Ask("brd")), Join(fresh.Ask("position startpos moves g1f3\nbrd")));
    EXPECT_TRUE(Contains(LegalMoves(fresh), engine.BestMove("go depth 5")));
}

TEST(GamesTest, SixHundredMovesAtTheConsole) {
    Session engine("Pondering = off"), fresh;
    std::string record = "force\nnopost\n", back;
    for (const std::string& move : LongGame()) record += move + "\n", back += "undo\n";
    EXPECT_TRUE(engine.Ask(record).empty());
    EXPECT_EQ(Join(engine.Ask("undo\nbrd")), Join(fresh.Ask("brd")));
    // What is kept can be taken back, the rest can't, and the game goes on.
    EXPECT_TRUE(engine.Ask(back).empty());
    const std::vector<std::string> legal = LegalMoves(engine);
    engine.Send("sd 4\ngo");
    EXPECT_TRUE(Contains(legal, engine.ReadUntil("move ").back().substr(5)));
}

}  // namespace
