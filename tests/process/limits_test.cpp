#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/process/session.h"
#include "tests/support/datafile.h"

namespace {

using Lines = std::vector<std::string>;

// Where a search goes on for a long time, and where it comes to its end at once: a mate in one, one move.
const std::string PLACES[] = {"position startpos\n", "position fen 6k1/5ppp/8/8/8/8/8/R6K w - -\n",
                              "position fen 7k/8/6K1/8/8/8/8/R7 b - -\n"};

// Sets no new game up, which would reset limits.
const std::string OTHER_SEARCH =
    "position fen r3k2r/pppq1ppp/2npbn2/2b1p3/2B1P3/2NPBN2/PPPQ1PPP/R3K2R w KQkq -\n";

// The number behind a word of the last report of a UCI search.
long long Reported(Engine& engine, const std::string& lines, const std::string& word) {
    engine.Send(lines);
    long long number = -1;
    for (const std::string& line : engine.ReadUntil("bestmove ")) {
        const size_t place = line.find(word);
        if (place != std::string::npos) number = std::stoll(line.substr(place + word.size()));
    }
    return number;
}

// What a "go" leaves behind must neither time the next one nor keep it from ending.
TEST(LimitsTest, BindWhateverCameBefore) {
    UciSession engine;
    for (const std::string before : {"wtime 20 btime 20", "infinite\nstop", "mate 2", "depth 1", "nodes 500",
                                     "movetime 10", "ponder wtime 20\nstop", "movestogo 3 btime 30"}) {
        engine.BestMove("go " + before);
        EXPECT_EQ(Reported(engine, OTHER_SEARCH + "setoption name Clear Hash\ngo depth 6", "info depth "), 6)
            << before;
        const long long nodes = Reported(engine, OTHER_SEARCH + "go nodes 30000", " nodes ");
        EXPECT_TRUE(nodes >= 30000 && nodes <= 30100) << before << ": " << nodes;
    }
    EXPECT_EQ(engine.BestMove("position startpos\ngo depth 3 searchmoves a2a4 e2e5"), "a2a4");
    EXPECT_NE(engine.BestMove("position startpos\ngo depth 3"), "a2a4") << "the restriction is over";
}

// Every fifth of the mates of each length, some by quiet moves: found when asked for, not when one too short
// is.
TEST(LimitsTest, MateSearchesFindTheirMateOrEnd) {
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

// The score that stands when nothing has been searched yet: the game's last, none of another game.
TEST(LimitsTest, ScoresBelongToTheirGame) {
    const std::string won = "position fen 4k3/8/8/8/8/8/PPPP4/R3K3 w - -", none = "\ngo depth 1";
    UciSession engine;
    engine.BestMove(won + " moves e1e2 e8e7\ngo depth 6");
    const auto score = [&](const std::string& position) {
        engine.Send("setoption name Clear Hash");
        return Reported(engine, position + none, " score cp ");
    };
    EXPECT_GT(score(won + " moves e1e2 e8e7 a2a4 e7e6"), 300);
    EXPECT_GT(score(won + " moves e1e2 e8e7 a2a4 e7d7"), 300) << "the prediction may have failed";
    EXPECT_EQ(score("position startpos"), 0);
}

TEST(LimitsTest, BindAtTheConsole) {
    for (const std::string limit : {"sd 3", "st 1", "level 40 0:01 0\ntime 30", "time 0"}) {
        Session engine("Pondering = off");
        engine.Send("nopost\n" + limit + "\ne2e4");
        const Lines lines = engine.ReadUntil("move ");
        ASSERT_EQ(lines.size(), 2u) << "the final line is printed whatever the mode: " << Join(lines);
        EXPECT_TRUE(limit != "sd 3" || lines[0].starts_with("3 ")) << lines[0];
    }
}

TEST(LimitsTest, UnlimitedSearchesAnswerWhenTold) {
    // Time, nodes, depth, moves left, moves and the move being searched.
    const std::regex form("stat01: \\d+ \\d+ \\d+ (\\d|1\\d|20) 20 [a-h][1-8][a-h][1-8]");
    for (const std::string& place : PLACES) {
        for (const char* go : {"go infinite", "go ponder wtime 100 btime 100"}) {
            UciSession engine;
            engine.Ask(place + go);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const Lines answer = engine.Ask(".");
            ASSERT_FALSE(answer.empty() || HasLine(answer, "bestmove")) << place << go;
            EXPECT_TRUE(place != PLACES[0] || std::regex_match(answer.back(), form)) << answer.back();
            EXPECT_NE(engine.BestMove("stop"), "0000") << place << go;
            EXPECT_FALSE(HasLine(engine.Ask("stop\nponderhit"), "bestmove")) << place << go;
            engine.Ask(place + "go ponder wtime 300 btime 300");
            EXPECT_NE(engine.BestMove("ponderhit"), "0000") << place << "a hit starts the clock";
        }
    }
}

TEST(LimitsTest, EndOfInputLetsALimitedSearchFinish) {
    EXPECT_NE(Transcript("uci\nposition startpos\ngo depth 6\n").find("\ninfo depth 6 "), std::string::npos);
    for (const char* go : {"uci\ngo nodes 50000", "uci\ngo wtime 1000 btime 1000", "uci\ngo infinite",
                           "uci\ngo ponder depth 3", "sd 5\ngo", "go"}) {
        const std::string output = Transcript(go);
        EXPECT_NE(output.find(*go == 'u' ? "\nbestmove " : "\nmove "), std::string::npos) << go;
    }
}

TEST(LimitsTest, LinesThatComeTooEarlyAreKeptInOrder) {
    UciSession engine;
    engine.Send("position startpos moves e2e4\ngo depth 7\nmvd\nposition startpos moves e2e4 e7e5 e1e2\nmvd");
    engine.Send("isready");
    const Lines lines = engine.ReadUntil("castling flags");
    EXPECT_EQ(lines.back(), "castling flags = 15");
    EXPECT_TRUE(HasLine(lines, "bestmove ")) << "the search comes to its end first";
    EXPECT_TRUE(HasLine(lines, "readyok")) << "answered within the search";
    EXPECT_EQ(engine.ReadLine(), "castling flags = 12");

    Session console("Pondering = off");
    console.Send("sd 7\nforce\ne2e4\ngo\nmvd\nbrd\nmoves");
    EXPECT_TRUE(HasLine(console.ReadUntil("castling flags"), "move "));
    EXPECT_TRUE(HasLine(console.ReadUntil("-------------- Legal moves"), " R N B Q K B N R"));
}

}  // namespace
