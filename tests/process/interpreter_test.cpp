#include <gtest/gtest.h>

#include <string>

#include "tests/process/session.h"

namespace {

using namespace std::string_literals;

// What shows where the game stands, without a search.
const std::string SHOW = "\nbrd\nmvd\nmoves\nbkm\n";

constexpr char HELP_TEXT[] =
    "Kestrovan commands:\n"
    "------------------------------------------------------------------------------\n"
    "\n"
    "analyze .................. Enters analyze mode\n"
    "bench .................... Counts the nodes and the time of a fixed set of searches\n"
    "black .................... Sets black to move and engine side to white\n"
    "brd ...................... Prints a board\n"
    "bkm ...................... Prints book moves for current position\n"
    "easy ..................... Toggles pondering off\n"
    "edit ..................... Edit board position\n"
    "egtbstat ................. Displays current EGTB status\n"
    "epdevl <f> ............... Produces static evaluations for EPD-file <f>\n"
    "evl ...................... Shows static evaluation for current position\n"
    "force .................... Toggles autoplay off\n"
    "go ....................... Starts search\n"
    "hard ..................... Toggles pondering on\n"
    "help ..................... Displays this help\n"
    "level <m> <t> <i> ........ Sets ICS time controls\n"
    "loadfen <e> .............. Sets FEN-position <e>\n"
    "moves .................... Displays all legal moves with ranking priorities\n"
    "mvd ...................... Shows position flags\n"
    "new ...................... Starts a new game\n"
    "nopost ................... Toggles silent mode on\n"
    "\n"
    "Press <enter> to continue....\n"
    "perft <d> ................ Tests the move generator/make_move with depth <d>\n"
    "post ..................... Toggles silent mode off\n"
    "q[uit] ................... Exits Kestrovan\n"
    "remove ................... Un-makes last moves of each side\n"
    "sd <d> ................... Sets max search depth to <d>\n"
    "st <t> ................... Sets max search time to <t>\n"
    "time <t> ................. Sets remaining game time in milliseconds to <t>\n"
    "uci ...................... UCI mode\n"
    "undo ..................... Un-makes last move of one side\n"
    "white .................... Sets white to move and engine side to black\n"
    "\n";

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
    "option name Aggressivity type spin min 0 max 300 default 100\n"
    "option name Defensivity type spin min 0 max 300 default 7\n"
    "option name Tropism type spin min 0 max 300 default 100\n"
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
        {"help\nbrd\n", HELP_TEXT},  // the line that turns the page does nothing else
        {"setoption name Defensivity value 7\nuci\n", UCI_TEXT},
        {"brd", START_BOARD},
        {"mvd\nforce\ne2e4\ne7e5\ne1e2\nmvd\n", "castling flags = 15\ncastling flags = 12\n"},
        {"e2e5\r\n", "Illegal move: e2e5\n"},
        {"force\ne7e8Queen, please\n", "Illegal move: e7e8Queen, please\n"},
        {"egtbstat\n", "UseEGTB = TRUE\ntb_path = c:\\tablebases\\\nEGTB files not found\n"},
        {"bkm\n", "Current nhash1 = 1719662434, nhash2 = 1336043135\nNo book loaded...\n"},
        {"loadfen 7k/8/6K1/8/8/8/8/R7 b - -\nmoves\n",
         "-------------- Legal moves: ----------------\n\nKh8g8 (512); \n"},
        {"pgneval\n", "Error opening file c:\\work\\source.pgn...\n"},
        // No command, no argument, no move: silence.
        {"hello\n\n\r\n   \nfoo bar\ne2 e4\nsd\nst\nperft\nlevel\ntime\notime\nstop\nponderhit\nc1\nfritz\n",
         ""},
        {"position\nsetoption\nsetoption name Hash\nsetoption name Hash value\nsetoption Hash 5\ndebug\n",
         ""},
        {"accepted ping\nprotover 2\ncomputer\nname Somebody\nrandom\nresult 1-0 {mate}\n", ""},
        {std::string(1'000'000, 'x') + "\nisready\n", "readyok\n"},
        {"isready\0brd\n\0\0\nisready"s, "readyok\nreadyok\n"},
    };
    for (const auto& [input, output] : rows) EXPECT_EQ(Transcript(input), output) << input.substr(0, 100);
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
    std::string manyTokens = "position startpos moves e2e4 e7e5 g1f3";
    for (int i = 0; i < 5000; ++i) manyTokens += " x" + std::to_string(i);
    const struct {
        std::string One, Other;
    } rows[] = {
        {"undo", ""},
        {"force\ne2e4\nundo\nundo", ""},
        {"force\ne2e4\nremove\nforce", ""},
        {italian + "\nremove", "force\ne2e4"},
        {italian + "\nnew", ""},
        {italian + "\nposition startpos", ""},
        {italian + "\nreset\nloadfen\nloadfen \nloadfen   \nload x\nclean\ndebug on", italian},
        {"Force\r\nE2E4\r\n   e7e5xyz\r\n\r\n g1f3 good\r\n", "force\ne2e4"},  // blanks are no move
        {"position startpos moves e2e4 e7e5 xyz e1g1 g1f3", italian},
        {manyTokens, italian},
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
        Engine engine(KESTROVAN_ENGINE);
        engine.Send(line);
        EXPECT_EQ(engine.WaitForExit(), 0) << line;
    }
}

TEST(InterpreterTest, EndsAtTheEndOfInputAnywhere) {
    const std::string script =
        "xboard\nsd 2\neasy\ne2e4\nhelp\n\nedit\n#\nke1 c ke8 pa7\n.\ngo\nhard\nnew\nd2d4\nd7d5\n"
        "analyze\nexit\nuci\nposition startpos moves e2e4\ngo infinite\nstop\ngo ponder\nponderhit\ndemo\n";
    constexpr size_t STEP = 6;
    for (size_t length = 1; length <= script.size(); length += STEP) Transcript(script.substr(0, length));
    Transcript(script);
}

}  // namespace
