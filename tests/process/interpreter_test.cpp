#include <gtest/gtest.h>

#include <string>

#include "tests/process/session.h"

namespace {

using namespace std::string_literals;

// What shows where the game stands, without a search.
const std::string SHOW = "\nbrd\nmvd\nmoves\nbkm\n";

constexpr char UCI_TEXT[] =
    "id name Kestrovan 1.50\n"
    "id author Tomas K. Varnel\n"
    "option name Hash type spin min 0 max 1024 default 10\n"
    "option name PawnHash type spin min 0 max 1024 default 7\n"
    "option name NalimovPath type string default c:\\tablebases\\\n"
    "option name OpeningsBook type string default .\\book.kvb\n"
    "option name OwnBook type check default true\n"
    "option name NalimovCache type spin min 1 max 128 default 1\n"
    "option name MultiPV type spin min 1 max 1024 default 1\n"
    "option name Aggressivity type spin min 0 max 300 default 300\n"
    "option name Defensivity type spin min 0 max 300 default 7\n"
    "option name Tropism type spin min 0 max 300 default -3\n"
    "option name Clear Hash type button\n"
    "uciok\n";

constexpr char START_BOARD[] =
    "*R*N*B*Q*K*B*N*R\n"
    "*P*P*P*P*P*P*P*P\n"
    " . . . . . . . .\n"
    " . . . . . . . .\n"
    " . . . . . . . .\n"
    " . . . . . . . .\n"
    " P P P P P P P P\n"
    " R N B Q K B N R\n";

TEST(InterpreterTest, AnswersWordForWord) {
    const struct {
        std::string Input, Output;
    } rows[] = {
        {"brd", START_BOARD},
        {"mvd\nforce\ne2e4\ne7e5\ne1e2\nmvd\n", "castling flags = 15\ncastling flags = 12\n"},
        {"e2e5\r\n", "Illegal move: e2e5\n"},
        {"force\ne7e8Queen, please\n", "Illegal move: e7e8Queen, please\n"},
        {"setoption name NalimovPath value /srv/my tables, too\negtbstat\n",
         "UseEGTB = TRUE\ntb_path = /srv/my tables, too\nEGTB files not found\n"},
        {"bkm\n", "Current nhash1 = 1719662434, nhash2 = 1336043135\nNo book loaded...\n"},
        {"loadfen 7k/8/6K1/8/8/8/8/R7 b - -\nmoves\n",
         "-------------- Legal moves: ----------------\n\nKh8g8 (512); \n"},
        {"pgneval\n", "Error opening file c:\\work\\source.pgn...\n"},
        {"setoption name aggr value 300\nsetoption name Defensivity value 7\nsetoption name Tropism value "
         "-3\nuci\nposition fen R6k/8/6K1/8/8/8/8/8 b - -\ngo depth 3\n",
         UCI_TEXT},  // a game that is over is not announced in this dialect
        // No command, no argument, no move: silence.
        {"hello\n\n\r\n   \nfoo bar\ne2 e4\nsd\nst\nperft\nlevel\ntime\notime\nstop\nponderhit\nc1\nfritz\n",
         ""},
        {"position\nsetoption\nsetoption name Hash\nsetoption name Hash value\nsetoption Hash 5\ndebug\n",
         ""},
        {"accepted ping\nrejected usermove\nprotover 1\ncomputer\nname Somebody\nrating 2000 1\nrandom\n"
         "variant normal\nhint\ndraw\nresult 1-0 {mate}\n",
         ""},
        {std::string(1'000'000, 'x') + "\nisready\n", "readyok\n"},
        {"isready\0brd\n\0\0\nisready"s, "readyok\nreadyok\n"},
    };
    for (const auto& [input, output] : rows) EXPECT_EQ(Transcript(input), output) << input.substr(0, 100);
    const std::string help = Transcript("help\nbrd\n");
    EXPECT_TRUE(help.starts_with("Kestrovan commands:\n")) << help;
    EXPECT_NE(help.find("\nPress <enter> to continue....\nperft <d> "), std::string::npos) << help;
    EXPECT_TRUE(help.ends_with(" side to black\n\n")) << "the line that turns the page does nothing else";
}

TEST(InterpreterTest, CountsPerftAndReportsTheEvaluation) {
    Session engine;
    EXPECT_TRUE(engine.Ask("perft -2").at(0).starts_with("total moves = 0 time = "));
    EXPECT_TRUE(engine.Ask("perft 3").at(0).starts_with("total moves = 8902 time = 0."));
    EXPECT_EQ(engine.Ask("perft 100000").size(), 1u) << "refused, not counted";
    // The scores differ with the weights, the rest of the initial position's report doesn't.
    const std::string report = Join(engine.Ask("evl"));
    EXPECT_TRUE(report.starts_with("Heuristic = ")) << report;
    EXPECT_NE(report.find("\ncurrent_phase = 0, black_phase = 0, white_phase = 0\n"), std::string::npos);
    EXPECT_NE(report.find("\nENDING(WHITE) = 0 ENDING(BLACK) = 0\n"), std::string::npos);
    EXPECT_TRUE(report.ends_with("\nShelter[BLACK] = 24 Shelter[WHITE] = 24\nDng = 24\n")) << report;
}

// Two ways to the same position.
TEST(InterpreterTest, ArrivesAtTheSamePosition) {
    const std::string italian = "force\ne2e4\ne7e5\ng1f3";
    const struct {
        std::string One, Other;
    } rows[] = {
        {"force\ne2e4\nundo\nundo", ""},
        {"force\ne2e4\nremove\nforce", ""},
        {italian + "\nremove", "force\ne2e4"},
        {italian + "\nnew", ""},
        {italian + "\nreset\nloadfen\nloadfen \nloadfen   \nload x\nclean\ndebug on", italian},
        {"Force\r\nE2E4\r\n   e7e5xyz\r\n\r\n g1f3 good\r\n", "force\ne2e4"},  // blanks are no move
        {"position startpos moves e2e4 e7e5 " + std::string(5000, 'x') + " e1g1 g1f3", italian},
        {"position fen rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1 moves e7e5 g1f3", italian},
        {"edit\n#\nra1 rh1 ke1 c rA8rh8KE8\n.\n", "loadfen r3k2r/8/8/8/8/8/8/R3K2R w KQkq -"},
        {"edit\n#ke1pa2cke8.black", "loadfen 4k3/8/8/8/8/8/P7/4K3 b - -"},
    };
    for (const auto& [one, other] : rows) {
        EXPECT_EQ(Transcript(one + SHOW), Transcript(other + SHOW)) << one.substr(0, 100);
    }
    EXPECT_EQ(Transcript("edit\nzx9.isready\n"), "ErrorErrorreadyok\n");
}

TEST(InterpreterTest, EndsWhenTold) {
    for (const char* line : {"q", "QUIT", "  qwerty 5", "edit\n#.q", "uci\ngo infinite\nq"}) {
        Engine engine(EnginePath());
        engine.Send(line);
        EXPECT_EQ(engine.WaitForExit(), 0) << line;
    }
}

}  // namespace
