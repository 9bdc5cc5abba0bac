#include "frontend/commands.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "book/booksettings.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "egtb/tablebases.h"
#include "eval/pawnhash.h"
#include "frontend/hashtables.h"
#include "frontend/newgame.h"
#include "frontend/settings.h"
#include "frontend/tokens.h"
#include "search/modes.h"
#include "search/root.h"
#include "search/timecontrol.h"
#include "search/transposition.h"
#include "tests/support/walker.h"

namespace {

void Interpret(const std::string& line) {
    SetInputLine(line);
    InterpretCommand();
}

// Every test begins as the program does, with the smallest tables.
class CommandsTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        SetDefaultSettings();
        HashEntries = PawnHashEntries = 16;
        AllocateHashTables();
        Interpret("xboard");
        NewGame();
    }
    void TearDown() override {
        FreeHashTables();
        HashEntries = PawnHashEntries = PonderSearch = SearchMovesCount = 0;
    }
};

TEST_F(CommandsTest, Level) {
    const struct {
        const char* Line;
        int Moves, Base, Increment;
    } rows[] = {
        {"level 40", 40, 1000, 7},
        {"level 40 5:30 2", 40, 33000, 200},
        {"level 40 5:30", 40, 30000, 3000},  // four tokens: what stands fourth is the increment
        {"level 40 5 2 ", 40, 30200, 0},     // the empty token behind the blank counts
        {"level 99999999999 357913:99999999 -99999999999", INT_MAX, INT_MAX, INT_MIN},
    };
    for (const auto& row : rows) {
        MovesToGo = 9;
        BaseTime = 1000;
        OwnIncrement = OpponentIncrement = 7;
        Interpret(row.Line);
        EXPECT_TRUE(MovesToGo == row.Moves && BaseTime == row.Base) << row.Line;
        EXPECT_TRUE(OwnIncrement == row.Increment && OpponentIncrement == row.Increment) << row.Line;
    }
}

TEST_F(CommandsTest, GoParameters) {
    const char *const white = "8/4k3/8/8/8/8/4K3/8 w - -", *const black = "8/4k3/8/8/8/8/4K3/8 b - -";
    struct Expected {
        int Engine = NO_CLOCK, Opponent = 0, Own = 0, Other = 0, Moves = 0, Time = 0, Depth = UNLIMITED_DEPTH,
            Nodes = 0, Mate = 0, Ponders = 0, Restricted = 0;
        bool operator==(const Expected&) const = default;
    };
    const struct {
        const char *Fen, *Line;
        Expected Values;
    } rows[] = {
        {white, "go wtime 60000 btime 50000 winc 1000 binc 2000", {6000, 5000, 100, 200}},
        {black, "go wtime 60000 btime 50000 winc 1000 binc 2000", {5000, 6000, 200, 100}},
        {white, "go movetime 9", {.Time = 1}},  // short, but a limit
        {white, "go depth 7 nodes 1000 mate 3", {.Depth = 7, .Nodes = 1000, .Mate = 3}},
        {white, "go movestogo 12 wtime 9 junk", {.Engine = 0, .Moves = 12}},
        {white, "go infinite", {.Engine = INFINITE_TIME}},
        {white, "go ponder wtime 99", {.Engine = 9, .Ponders = 1}},
        {white, "go searchmoves e2e3 x e2e1 depth 5", {.Restricted = 2}},
        {white, "go depth 99999999999 movetime -15", {.Time = 1, .Depth = INT_MAX}},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        PonderSearch = SearchMovesCount = 0;
        Tokenize(row.Line, " ");
        ReadGoParameters();
        const Expected values{EngineTime, OpponentTime, OwnIncrement,    OpponentIncrement,
                              MovesToGo,  MoveTime,     MaxDepth,        NodeLimit,
                              MateSearch, PonderSearch, SearchMovesCount};
        EXPECT_TRUE(values == row.Values) << row.Line;
    }
}

TEST_F(CommandsTest, SetVariables) {
    const struct {
        const char* Line;
        const int& Variable;
        int Value;
    } rows[] = {
        {"st 99999999", MoveTime, INT_MAX},
        {"sd 3", MaxDepth, 3},
        {"new", MaxDepth, UNLIMITED_DEPTH},
        {"setoption name Hash value 2", HashEntries, 104857},
        {"setoption name OwnBook value false", OwnBook, 0},
        {"setoption name NalimovCache value 3", EGTBHashSize, 3145728},
        {"setoption name NalimovCache value -3", EGTBHashSize, 0},
        {"setoption name NalimovCache value 99999999999", EGTBHashSize, 134217728},
    };
    for (const auto& row : rows) {
        Interpret(row.Line);
        EXPECT_EQ(row.Variable, row.Value) << row.Line;
    }
    for (const char* line : {"setoption name Clear Hash", "clean"}) {
        HashStore(60, TextToMove("e2e4"), 5, BOUND_EXACT, 0, 0, 0);
        Interpret("setoption name Clear Something");
        EXPECT_NE(HashProbe(), nullptr);
        Interpret(line);
        EXPECT_EQ(HashProbe(), nullptr) << line;
    }
}

}  // namespace
