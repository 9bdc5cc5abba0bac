#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "tests/process/session.h"

namespace {

using Lines = std::vector<std::string>;

// Where a search goes on for a long time, and where it comes to its end at once: a mate in one, one move.
constexpr char LONG_SEARCH[] = "position startpos";
// Sets no new game up, which would reset limits.
const std::string OTHER_SEARCH =
    "position fen r3k2r/pppq1ppp/2npbn2/2b1p3/2B1P3/2NPBN2/PPPQ1PPP/R3K2R w KQkq -";
constexpr char SHORT_SEARCH[] = "position fen 6k1/5ppp/8/8/8/8/8/R6K w - -";
constexpr char ONE_MOVE[] = "position fen 7k/8/6K1/8/8/8/8/R7 b - -";

// The last report of the lines: its depth and nodes.
struct Report {
    int Depth = 0;
    long long Nodes = 0;
};

Report LastReport(const Lines& lines) {
    Report report;
    for (const std::string& line : lines) {
        int depth = 0;
        long long nodes = 0;
        const size_t place = line.find(" nodes ");
        if (std::sscanf(line.c_str(), "info depth %d", &depth) != 1 || place == std::string::npos) continue;
        if (std::sscanf(line.c_str() + place, " nodes %lld", &nodes) == 1) report = {depth, nodes};
    }
    return report;
}

Lines Search(Engine& engine, const std::string& lines) {
    engine.Send(lines);
    return engine.ReadUntil("bestmove ");
}

// What a "go" leaves behind must neither time the next one nor keep it from ending.
TEST(LimitsTest, BindWhateverCameBefore) {
    const char* const earlier[] = {
        "isready",    "go wtime 20 btime 20", "go infinite\nstop", "go mate 2",
        "go depth 1", "go nodes 500",         "go movetime 10",    "go ponder wtime 20\nstop"};
    UciSession engine;
    for (const char* before : earlier) {
        engine.Send(before);
        engine.ReadUntil(before == earlier[0] ? "readyok" : "bestmove ");
        EXPECT_EQ(LastReport(Search(engine, OTHER_SEARCH + "\nsetoption name Clear Hash\ngo depth 6")).Depth,
                  6)
            << before;
        const Report report = LastReport(Search(engine, OTHER_SEARCH + "\ngo nodes 30000"));
        EXPECT_GE(report.Nodes, 30000) << before;
        EXPECT_LE(report.Nodes, 30100) << before;
        Search(engine, "position startpos\ngo movetime 50");
        Search(engine, "position startpos\ngo mate 1");
        Search(engine, "go wtime 30 btime 30 winc 5 binc 5");
        Search(engine, "go movestogo 3 wtime 30 btime 30");
    }
    EXPECT_LE(LastReport(Search(engine, "go nodes 1")).Nodes, 10);
}

TEST(LimitsTest, BindAtTheConsole) {
    for (const char* limit : {"sd 3", "st 1", "level 40 0:01 0\ntime 30", "time 0", "time 5\notim 9999999"}) {
        Session engine("Pondering = off");
        engine.Send(limit);
        engine.Send("e2e4");
        EXPECT_EQ(engine.ReadUntil("move ").back().find("Illegal"), std::string::npos) << limit;
    }
    Session engine("Pondering = off");
    engine.Send("nopost\nsd 3\ngo");
    const Lines lines = engine.ReadUntil("move ");
    ASSERT_EQ(lines.size(), 2u) << "the final line is printed whatever the mode";
    EXPECT_TRUE(lines[0].starts_with("3 ")) << lines[0];
}

TEST(LimitsTest, SearchOnlyTheMovesAskedFor) {
    UciSession engine;
    EXPECT_EQ(engine.BestMove("position startpos\ngo depth 3 searchmoves a2a4 e2e5"), "a2a4");
    EXPECT_EQ(engine.BestMove("go movetime 30 searchmoves h7h6"), "h7h6") << "the reply to it";
    EXPECT_NE(engine.BestMove("position startpos\ngo depth 3"), "a2a4") << "the restriction is over";
}

TEST(LimitsTest, UnlimitedSearchesAnswerWhenTold) {
    for (const char* position : {LONG_SEARCH, SHORT_SEARCH, ONE_MOVE}) {
        for (const char* go :
             {"go infinite", "go ponder", "go ponder wtime 100 btime 100", "go ponder depth 2"}) {
            UciSession engine;
            const std::string start = std::string(position) + "\n" + go;
            EXPECT_FALSE(HasLine(engine.Ask(start), "bestmove")) << start;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            EXPECT_FALSE(HasLine(engine.Ask(""), "bestmove")) << start;
            EXPECT_NE(engine.BestMove("stop"), "0000") << start;
            EXPECT_FALSE(HasLine(engine.Ask("stop\nponderhit"), "bestmove")) << start;
        }
    }
}

TEST(LimitsTest, PonderHitStartsTheClock) {
    for (const char* position : {LONG_SEARCH, SHORT_SEARCH, ONE_MOVE}) {
        UciSession engine;
        const std::string start = std::string(position) + "\ngo ponder wtime 300 btime 300";
        EXPECT_FALSE(HasLine(engine.Ask(start), "bestmove")) << start;
        EXPECT_NE(engine.BestMove("ponderhit"), "0000") << start;
    }
}

TEST(LimitsTest, EndOfInputLetsALimitedSearchFinish) {
    const struct {
        const char *Go, *Proof;
    } rows[] = {{"go depth 6", "info depth 6 "},    {"go movetime 100", "bestmove "},
                {"go nodes 50000", "bestmove "},    {"go wtime 1000 btime 1000", "bestmove "},
                {"go mate 1", "bestmove "},         {"go infinite", "bestmove "},
                {"go ponder depth 3", "bestmove "}, {"go", "bestmove "}};
    for (const auto& [go, proof] : rows) {
        const std::string output = Transcript("uci\nposition startpos\n" + std::string(go) + "\n");
        EXPECT_NE(output.find(std::string("\n") + proof), std::string::npos) << go;
        EXPECT_NE(output.find("\nbestmove "), std::string::npos) << go;
    }
    EXPECT_NE(Transcript("sd 5\ngo\n").find("\nmove "), std::string::npos);
    EXPECT_NE(Transcript("go\n").find("\nmove "), std::string::npos) << "no limit at all";
}

TEST(LimitsTest, QuitEndsASearchAtOnce) {
    for (const char* line : {"q", "quit"}) {
        UciSession engine;
        EXPECT_FALSE(HasLine(engine.Ask("go infinite"), "bestmove"));
        engine.Send(line);
        EXPECT_EQ(engine.WaitForExit(), 0) << line;
    }
}

TEST(LimitsTest, LinesThatComeTooEarlyAreKeptInOrder) {
    UciSession engine;
    engine.Send("position startpos moves e2e4\ngo depth 7\nmvd\nposition startpos moves e2e4 e7e5 e1e2\nmvd");
    engine.Send("isready");
    Lines lines = engine.ReadUntil("castling flags");
    EXPECT_EQ(lines.back(), "castling flags = 15");
    EXPECT_TRUE(HasLine(lines, "bestmove ")) << "the search comes to its end first";
    EXPECT_TRUE(HasLine(lines, "readyok")) << "answered within the search";
    EXPECT_EQ(engine.ReadLine(), "castling flags = 12");

    Session console("Pondering = off");
    console.Send("sd 7\nforce\ne2e4\ngo\nmvd\nbrd\nmoves");
    lines = console.ReadUntil("castling flags");
    EXPECT_TRUE(HasLine(lines, "move "));
    EXPECT_TRUE(HasLine(console.ReadUntil("-------------- Legal moves"), " R N B Q K B N R"));
}

TEST(LimitsTest, AnswersQuestionsWhileSearching) {
    UciSession engine;
    engine.Send("position startpos\ngo infinite\n.");
    const std::string answer = engine.ReadUntil("stat01: ").back();
    int time = 0, depth = 0, left = 0, count = 0, end = 0;
    long long nodes = 0;
    char move[6] = "";
    ASSERT_EQ(std::sscanf(answer.c_str(), "stat01: %d %lld %d %d %d %5s%n", &time, &nodes, &depth, &left,
                          &count, move, &end),
              6)
        << answer;
    EXPECT_EQ(static_cast<size_t>(end), answer.size()) << answer;
    EXPECT_EQ(count, 20);
    EXPECT_TRUE(left >= 1 && left <= 20) << answer;
    EXPECT_EQ(std::string(move).size(), 4u) << answer;
    engine.Send("isready");
    engine.ReadUntil("readyok");
    engine.BestMove("stop");
}

TEST(LimitsTest, GameCommandsEndASearch) {
    const struct {
        const char *Line, *Answer;
    } rows[] = {
        {"new", "castling flags = 15"},
        {"undo", "castling flags = 15"},
        {"force", "castling flags = 12"},
        {"result 1-0 {test}", "castling flags = 12"},
    };
    for (const auto& [line, answer] : rows) {
        Session engine("Pondering = off");
        engine.Ask("force\ne2e4\ne7e5\ne1e2");
        engine.Send(std::string("go\n") + line + "\nforce\nmvd\nisready");
        const Lines lines = engine.ReadUntil("readyok");
        EXPECT_FALSE(HasLine(lines, "move ")) << line;
        EXPECT_TRUE(HasLine(lines, answer)) << line << "\n" << Join(lines);
    }
}

}  // namespace
