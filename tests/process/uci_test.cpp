#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/process/session.h"
#include "tests/support/datafile.h"

// The UCI protocol, command by command. Limits, their order and illegal positions have tests of their own.

namespace {

using Lines = std::vector<std::string>;

const std::string START = "position startpos\n", BLACK_TO_MOVE = "position startpos moves d2d4\n",
                  MATE_IN_ONE = "position fen 6k1/5ppp/8/8/8/8/8/R6K w - - 0 1\n",
                  ONE_MOVE = "position fen 7k/8/6K1/8/8/8/8/R7 b - - 0 1\n";

// A line that no search answers itself, and the line that shows it has been carried out.
const std::string SENTINEL = "\nmvd", SENTINEL_ANSWER = "castling flags = ";

long CountLines(const Lines& lines, const std::string& prefix) {
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.starts_with(prefix); });
}

void Rest(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// Expects that the moves can be played one after another in a position, which another engine judges.
void ExpectLegal(const std::string& position, const Lines& moves) {
    static Session referee;
    const std::regex form("([a-h][1-8]){2}[qrbn]?");
    for (const std::string& move : moves) EXPECT_TRUE(std::regex_match(move, form)) << move;
    EXPECT_EQ(Join(referee.Ask(position + "force\n" + Join(moves))), "") << position << Join(moves);
}

// Expects that an answer is "bestmove <move> [ponder <move>]" with moves that are legal in the position.
void ExpectLegalAnswer(const std::string& position, const std::string& answer) {
    const Lines words = SplitWords(answer);
    ASSERT_TRUE(words.size() == 2 || (words.size() == 4 && words[2] == "ponder")) << answer;
    ExpectLegal(position, words.size() == 2 ? Lines{words[1]} : Lines{words[1], words[3]});
}

TEST(UciTest, IntroducesItselfWheneverAsked) {
    Session engine;
    const std::regex form(
        "id (name|author) \\S.*|option name \\S.* type (spin min -?\\d+ max -?\\d+ default -?\\d+|"
        "check default (true|false)|string default .+|button)|uciok");
    const Lines text = engine.Ask("uci");
    EXPECT_EQ(text.back(), "uciok");
    EXPECT_EQ(CountLines(text, "id "), 2);
    for (const std::string& line : text) EXPECT_TRUE(std::regex_match(line, form)) << line;
    EXPECT_EQ(Join(engine.Ask("uci\nuci")), Join(text) + Join(text));
    EXPECT_EQ(Join(engine.Ask("ucinewgame")), Join(text)) << "deliberate: the first keyword that fits";
    ExpectLegalAnswer(START, "bestmove " + engine.BestMove("debug on\nucinewgame\n" + START + "go depth 2"));
    EXPECT_EQ(Join(engine.Ask("uci")), Join(text)) << "with the same defaults";
}

TEST(UciTest, TakesEveryOptionItAnnounces) {
    Session engine;
    constexpr size_t NAME_START = 12;  // behind "option name "
    int options = 0;
    for (const std::string& line : engine.Ask("uci")) {
        if (!line.starts_with("option ")) continue;
        const std::string name = line.substr(NAME_START, line.find(" type ") - NAME_START);
        const Lines words = SplitWords(line);
        Lines values;  // empty for a button
        for (size_t i = 0; i + 1 < words.size(); ++i) {
            if (words[i] == "min" || words[i] == "max" || words[i] == "default")
                values.push_back(words[i + 1]);
        }
        if (words.back() == "button") values.push_back("");
        for (const std::string& value : values) {
            const std::string set = "setoption name " + name + (value.empty() ? "" : " value " + value);
            const Lines said = engine.Ask(set);
            // There is no book of the default name.
            const std::string expected = name == "OpeningsBook" ? "Error opening \"" + value + "\"!\n" : "";
            EXPECT_EQ(Join(said), expected) << set;
            ExpectLegalAnswer(START, "bestmove " + engine.BestMove(START + "go depth 2"));
            ++options;
        }
    }
    EXPECT_GT(options, 10);
    // Unknown lines, and those of the other direction.
    const std::string others =
        "setoption name NoSuchOption value 3\nsetoption name\nsetoption value 3\n"
        "register later\nregister name Stefan code 4359874324\nregister\nxyzzy debug on\nponderhit "
        "ponderhit\n"
        "bestmove e2e4\nreadyok\ncopyprotection ok\ninfo depth 3";
    EXPECT_EQ(Join(engine.Ask(others)), "");
}

TEST(UciTest, IsReadyInEverySearch) {
    UciSession engine;
    for (const std::string go :
         {"infinite", "ponder wtime 10 btime 10", "depth 90", "nodes 2000000000", "movetime 600000",
          "mate 40", "infinite searchmoves a2a3 h2h4", "wtime 99999999 btime 99999999 movestogo 1"}) {
        engine.Send(START + "go " + go + "\nisready");
        Lines lines = engine.ReadUntil("readyok");
        Rest(20);
        for (const std::string& line : engine.Ask("isready\nisready")) lines.push_back(line);
        engine.ReadUntil("readyok");
        engine.ReadUntil("readyok");
        EXPECT_FALSE(HasLine(lines, "bestmove")) << go;
        engine.Send("stop \n stop");
        const std::string answer = engine.ReadUntil("bestmove ").back();
        ExpectLegalAnswer(START, answer);
        const std::string move = SplitWords(answer)[1];
        EXPECT_TRUE(!go.ends_with("h2h4") || move == "a2a3" || move == "h2h4") << move;
        EXPECT_EQ(Join(engine.Ask("stop\nponderhit\nstop")), "") << go << ": there is no search";
    }
}

TEST(UciTest, EveryGoIsAnsweredOnce) {
    UciSession engine;
    std::istringstream limits(
        "depth 1\ndepth 0\ndepth -1\ndepth x\ndepth 2 depth 3\nnodes 1\nmovetime 1\nmovetime 0\n"
        "movetime -5\nwtime 0 btime 0\nwtime -10 btime -19\nwtime -100 btime -100 winc -1 binc -1\n"
        "wtime 1 btime 1 movestogo 1\nwtime 30 btime 30 movestogo 0\nwtime 30 btime 30 movestogo -3\n"
        "mate 1\nwtime 99999999999999999999 winc 2147483647 depth 3\nmovetime 2147483648 depth 3\n"
        "xyzzy depth 2 -\ndepth 2 searchmoves\ndepth 2 searchmoves e2e5\n");
    for (std::string go; std::getline(limits, go);) {
        for (const std::string& position : {START, BLACK_TO_MOVE, MATE_IN_ONE, ONE_MOVE}) {
            engine.Send(position + "go " + go);
            ExpectLegalAnswer(position, engine.ReadUntil("bestmove ").back());
            EXPECT_EQ(Join(engine.Ask("stop")), "") << position << go;
        }
    }
    engine.Send(START + "go depth 3\n" + START + "go depth 2\n" + MATE_IN_ONE + "go mate 1" + SENTINEL);
    const Lines lines = engine.ReadUntil(SENTINEL_ANSWER);
    EXPECT_EQ(CountLines(lines, "bestmove "), 3) << Join(lines);
    EXPECT_TRUE(HasLine(lines, "bestmove a1a8"));
}

// Whatever limit ends them, the answer waits for its word. From a hit on only limits end them.
TEST(UciTest, FinishedSearchesWait) {
    UciSession engine;
    for (const std::string& position : {START, MATE_IN_ONE, ONE_MOVE}) {
        for (const std::string go :
             {"infinite depth 2", "infinite nodes 100", "infinite mate 1", "ponder depth 2",
              "ponder nodes 100", "ponder mate 1", "ponder movetime 10", "ponder btime 5 wtime 5 depth 2"}) {
            engine.Send(position + "go " + go);
            Rest(10);
            const bool isPonder = go.starts_with("ponder");
            if (HasLine(engine.Ask(isPonder ? "" : "ponderhit"), "bestmove")) {
                ADD_FAILURE() << "ends by itself: " << position << go;
                continue;
            }
            engine.Send(isPonder ? "ponderhit" : "stop");
            ExpectLegalAnswer(position, engine.ReadUntil("bestmove ").back());
            EXPECT_EQ(Join(engine.Ask("stop\nponderhit")), "") << position << go;
        }
    }
}

TEST(UciTest, MoveTimeCountsFromThePonderHit) {
    constexpr int LIMIT_MS = 400, GRAIN_MS = 20;
    UciSession engine;
    engine.Ask(START + "go ponder movetime " + std::to_string(LIMIT_MS));
    Rest(LIMIT_MS + 100);
    ASSERT_EQ(CountLines(engine.Ask(""), "bestmove"), 0);
    const auto hit = std::chrono::steady_clock::now();
    engine.BestMove("ponderhit\nponderhit");
    EXPECT_GE(std::chrono::steady_clock::now() - hit, std::chrono::milliseconds(LIMIT_MS - GRAIN_MS));
    EXPECT_EQ(Join(engine.Ask("ponderhit")), "");
}

TEST(UciTest, HasNoMoveWhenTheGameIsOver) {
    UciSession engine;
    for (const std::string fen : {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}) {
        for (const std::string go : {"depth 3", "infinite", "ponder", "movetime 10", "wtime 9 btime 9",
                                     "mate 1", "depth 2 searchmoves g8h8"}) {
            EXPECT_EQ(Join(engine.Ask("position fen " + fen + "\ngo " + go + "\nisready\nstop\nponderhit")),
                      "")
                << fen << go;
            engine.ReadUntil("readyok");
        }
        ExpectLegalAnswer(START, "bestmove " + engine.BestMove(START + "go depth 2"));
    }
}

TEST(UciTest, SomeLinesLeaveWaitingSearchesAlone) {
    for (const std::string& go : {START + "go infinite", MATE_IN_ONE + "go infinite", START + "go ponder"}) {
        for (const std::string line : {"", "   ", "debug on", "debug off", "xyzzy", "joho debug on",
                                       "register later", "info depth 3", "debug"}) {
            UciSession engine;
            engine.Send(go);
            EXPECT_FALSE(HasLine(engine.Ask(line), "bestmove")) << go << ", then: " << line;
        }
    }
}

// The search is answered first; then each line does what it does at other times.
TEST(UciTest, OtherLinesEndWaitingSearchesAndAreCarriedOut) {
    const struct {
        std::string Input;
        Lines Prefixes;  // of lines behind the answer, in this order
    } rows[] = {
        {"position startpos moves e2e4 e7e5 e1e2", {"castling flags = 12"}},
        {"go depth 2", {"info depth ", "bestmove ", SENTINEL_ANSWER}},
        {"go infinite\nposition startpos\ngo ponder\nposition startpos",
         {"bestmove ", "bestmove ", SENTINEL_ANSWER}},
        {"setoption name MultiPV value 2\nposition startpos\ngo depth 2",
         {"info multipv 2 ", "bestmove ", SENTINEL_ANSWER}},
        {"uci", {"id name ", "uciok", SENTINEL_ANSWER}},
        {"ucinewgame\nposition startpos\ngo nodes 100", {"uciok", "bestmove ", SENTINEL_ANSWER}},
        {"position fen 8/8/8/8/8/8/8/8 w - - 0 1\ngo depth 2",
         {"info string illegal position: ", "bestmove 0000", SENTINEL_ANSWER}},
    };
    for (const auto& [input, prefixes] : rows) {
        for (const std::string go : {"go infinite", "go ponder", "go ponder wtime 5 btime 5"}) {
            for (const std::string& position : {START, ONE_MOVE}) {
                UciSession engine;
                engine.Ask(position + go);
                engine.Send(input + SENTINEL);
                Lines lines = {engine.ReadLine()};
                while (lines.back().starts_with("info ")) lines.back() = engine.ReadLine();
                ExpectLegalAnswer(position, lines.back());
                for (const std::string& prefix : prefixes) {
                    const Lines more = engine.ReadUntil(prefix);
                    lines.insert(lines.end(), more.begin(), more.end());
                }
                EXPECT_EQ(CountLines(lines, "bestmove "), 1 + CountLines(prefixes, "bestmove "))
                    << Join(lines);
                EXPECT_EQ(Join(engine.Ask("stop")), "") << go << "\n" << input;
            }
        }
    }
}

TEST(UciTest, QuitsFromEverySearch) {
    for (const std::string& position : {START, ONE_MOVE}) {
        for (const std::string go :
             {"go ponder wtime 9 btime 9", "go infinite", "go movetime 600000\nposition startpos"}) {
            UciSession engine;
            engine.Ask(position + go);
            engine.Send("quit");
            EXPECT_EQ(engine.WaitForExit(), 0) << position << go;
        }
    }
}

TEST(UciTest, ReportsAreWellFormedAndEndWithTheBestMove) {
    const std::string move = "[a-h][1-8][a-h][1-8][qrbn]?",
                      counts = " nodes \\d+ time \\d+ hashfull (\\d{1,3}|1000) nps \\d+ tbhits \\d+";
    const std::regex form(
        "info (multipv \\d+ )?depth \\d+ seldepth \\d+ score (cp -?\\d+|mate -?[1-9]\\d*)"
        "( (lower|upper)bound)?" +
        counts + "( currmove " + move + " currmovenumber \\d+)?( pv( " + move +
        ")+)?|info nps \\d+ nodes \\d+ tbhits \\d+ hashfull \\d+");
    const std::string middleGame =
        "position fen r3k2r/pppq1ppp/2npbn2/2b1p3/2B1P3/2NPBN2/PPPQ1PPP/R3K2R w KQkq - 0 1\n";
    for (const int lineCount : {1, 3}) {
        UciSession engine;
        engine.Ask("setoption name MultiPV value " + std::to_string(lineCount));
        for (const std::string& position : {START, BLACK_TO_MOVE, middleGame, MATE_IN_ONE}) {
            for (const std::string go : {"go depth 7", "go nodes 300000"}) {
                engine.Send(position + go);
                Lines lines = engine.ReadUntil("bestmove "), firsts;
                const std::string answer = lines.back();
                lines.pop_back();
                ExpectLegalAnswer(position, answer);
                for (const std::string& line : lines) EXPECT_TRUE(std::regex_match(line, form)) << line;
                // The last line of each number and its first move.
                for (int i = 1; i <= lineCount; ++i) {
                    const std::string start =
                        lineCount == 1 ? "info depth " : "info multipv " + std::to_string(i) + " ";
                    const auto last =
                        std::find_if(lines.rbegin(), lines.rend(), [&](const std::string& line) {
                            return line.starts_with(start) && line.find(" pv ") != std::string::npos;
                        });
                    ASSERT_NE(last, lines.rend()) << start << position << go;
                    const Lines pv = SplitWords(last->substr(last->find(" pv ") + 4));
                    ExpectLegal(position, pv);
                    EXPECT_EQ(std::count(firsts.begin(), firsts.end(), pv[0]), 0)
                        << "another move on each line";
                    firsts.push_back(pv[0]);
                }
                EXPECT_EQ(firsts[0], SplitWords(answer)[1]) << position << go;
            }
        }
    }
}

}  // namespace
