#include "frontend/commands.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "book/book.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "egtb/tablebases.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
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
        EngineTime = NO_CLOCK;
        OpponentTime = OwnIncrement = OpponentIncrement = FritzMode = 0;
        BaseTime = 1000;
        PostMode = 1;
    }
    void TearDown() override {
        FreeHashTables();
        HashEntries = PawnHashEntries = 0;
    }
};

TEST_F(CommandsTest, Level) {
    const struct {
        const char* Line;
        int Moves, Base, Increment;
    } rows[] = {
        {"level", 9, 1000, 7},
        {"level 40", 40, 1000, 7},
        {"level 40 5", 40, 30000, 7},
        {"level 40 5 2", 40, 30000, 200},
        {"level 40 5:30 2", 40, 33000, 200},
        {"level 0 0:03 1", 0, 300, 100},
        {"level 40 5:30", 40, 30000, 3000},  // four tokens: what stands fourth is the increment
        {"level:40:5:2", 40, 30000, 200},
        {"level 40 5 2 ", 40, 30200, 0},  // the empty token behind the blank counts
        {"level a b c", 0, 0, 0},
        {"level 1 99999999 99999999", 1, INT_MAX, INT_MAX},
        {"level 99999999999 357913:99999999 -99999999999", INT_MAX, INT_MAX, INT_MIN},
    };
    for (const auto& row : rows) {
        MovesToGo = 9;
        BaseTime = 1000;
        OwnIncrement = OpponentIncrement = 7;
        Interpret(row.Line);
        EXPECT_EQ(MovesToGo, row.Moves) << row.Line;
        EXPECT_EQ(BaseTime, row.Base) << row.Line;
        EXPECT_EQ(OwnIncrement, row.Increment) << row.Line;
        EXPECT_EQ(OpponentIncrement, row.Increment) << row.Line;
    }
}

TEST_F(CommandsTest, LimitsAndModes) {
    const struct {
        const char* Line;
        const int& Variable;
        int Value;
    } rows[] = {
        {"sd 5", MaxDepth, 5},
        {"sd", MaxDepth, 5},
        {"sd ", MaxDepth, 0},
        {"st 3", MoveTime, 300},
        {"stop", MoveTime, 300},
        {"st 99999999", MoveTime, INT_MAX},
        {"time 1234", EngineTime, 1234},
        {"otim 77", OpponentTime, 77},
        {"otime 78", OpponentTime, 78},
        {"nopost", PostMode, 0},
        {"post", PostMode, 1},
        {"force", ForceMode, 1},
        {"new", ForceMode, 0},
        {"new", MaxDepth, UNLIMITED_DEPTH},
        {"new", MoveTime, 0},
        {"new", EngineTime, 1234},
        {"new", EngineSide, BLACK},
        {"black", board.SideToMove, BLACK},
        {"black", EngineSide, WHITE},
        {"white", board.SideToMove, WHITE},
        {"white", EngineSide, BLACK},
        {"easy", PonderingOn, 0},
        {"hard", PonderingOn, 1},
        {"fritz", FritzMode, 1},
        {"sd 4", MaxDepth, 4},
        {"xboard", MaxDepth, UNLIMITED_DEPTH},
        {"c1 5", MaxDepth, UNLIMITED_DEPTH},
    };
    for (const auto& row : rows) {
        Interpret(row.Line);
        EXPECT_EQ(row.Variable, row.Value) << row.Line;
    }
    PonderingAllowed = 0;
    for (const char* line : {"easy", "hard", "xboard"}) {
        Interpret(line);
        EXPECT_EQ(PonderingOn, 0) << line << ": the setting forbids it";
    }
}

TEST_F(CommandsTest, NewForgetsTheGameUnlessToldOtherwise) {
    for (const bool keeps : {false, true}) {
        FritzMode = keeps;
        LastScore = 55;
        LastScoreSide = BLACK;
        Interpret("force");
        Interpret("e2e4");
        EXPECT_EQ(HistoryLength, 1);
        Interpret("new");
        EXPECT_EQ(HistoryLength, 0);
        EXPECT_EQ(LastScore, keeps ? 55 : 0);
    }
}

TEST_F(CommandsTest, GoParameters) {
    const char *const white = "8/4k3/8/8/8/8/4K3/8 w - -", *const black = "8/4k3/8/8/8/8/4K3/8 b - -";
    struct Expected {
        int Engine = NO_CLOCK, Opponent = 0, Own = 0, Other = 0, Moves = 0, Time = 0, Depth = 998, Nodes = 0,
            Mate = 0, Ponders = 0, Restricted = 0;
        bool operator==(const Expected&) const = default;
    };
    const struct {
        const char *Fen, *Line;
        Expected Values;
    } rows[] = {
        {white, "go wtime 60000 btime 50000 winc 1000 binc 2000", {6000, 5000, 100, 200}},
        {black, "go wtime 60000 btime 50000 winc 1000 binc 2000", {5000, 6000, 200, 100}},
        {white, "go movetime 2500", {.Time = 250}},
        {white, "go movetime 9", {.Time = 1}},  // short, but a limit
        {white, "go depth 7 nodes 1000 mate 3", {.Depth = 7, .Nodes = 1000, .Mate = 3}},
        {white, "go movestogo 12 wtime 9 junk", {.Engine = 0, .Moves = 12}},
        {white, "go infinite", {.Engine = INFINITE_TIME}},
        {white, "go ponder wtime 99", {.Engine = 9, .Ponders = 1}},
        {white, "go searchmoves e2e3 x e2e1 depth 5", {.Restricted = 2}},
        {white, "go depth", {.Depth = 0}},
        {white, "go depth 99999999999 movetime -15", {.Time = 1, .Depth = INT_MAX}},
        {white, "go DEPTH 3 Wti 70", {.Engine = 7, .Depth = 3}},
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
    PonderSearch = SearchMovesCount = 0;
}

TEST_F(CommandsTest, SetOption) {
    const struct {
        const char* Line;
        const int& Variable;
        int Value;
    } rows[] = {
        {"setoption name Aggressivity value 500", Aggressivity.Scaled, 250},
        {"setoption name aggr value 300", Aggressivity.Raw, 300},
        {"setoption name Defensivity value 60", Cowardice.Scaled, 30},
        {"setoption name Tropism value -3", Tropism.Scaled, -6},
        {"setoption name Tropism value 2147483647", Tropism.Raw, INT_MAX},
        {"setoption name Tropism", Tropism.Raw, INT_MAX},
        {"setoption Tropism value 5", Tropism.Raw, INT_MAX},
        {"setoption name Tropism is 5", Tropism.Raw, INT_MAX},
        {"setoption name Hash value 2", HashEntries, 104857},
        {"setoption name Hash value 0", HashEntries, 0},
        {"setoption name PawnHash value 1", PawnHashEntries, 43690},
        {"setoption name PawnHash value -1", PawnHashEntries, 0},
        {"setoption name OwnBook value false", OwnBook, 0},
        {"setoption name OwnBook value maybe", OwnBook, 0},
        {"setoption name OwnBook value True", OwnBook, 1},
        {"setoption name NalimovCache value 3", EGTBHashSize, 3145728},
    };
    for (const auto& row : rows) {
        Interpret(row.Line);
        EXPECT_EQ(row.Variable, row.Value) << row.Line;
    }
    Interpret("setoption name NalimovPath value /srv/my tables, too");
    EXPECT_EQ(std::string(tb_path), "/srv/my tables, too");
    UseEGTB = 0;
    Interpret("setoption name NalimovPath value /elsewhere");
    Interpret("setoption name NalimovCache value 9");
    EXPECT_EQ(std::string(tb_path), "/srv/my tables, too");
    EXPECT_EQ(EGTBHashSize, 3145728);
}

TEST_F(CommandsTest, ClearHashEmptiesTheTable) {
    for (const char* line : {"setoption name Clear Hash", "setoption name Clear Hash value 1", "clean"}) {
        HashStore(60, TextToMove("e2e4"), 5, BOUND_EXACT, 0, 0, 0);
        ASSERT_NE(HashProbe(), nullptr);
        Interpret("setoption name Clear Something");
        EXPECT_NE(HashProbe(), nullptr);
        Interpret(line);
        EXPECT_EQ(HashProbe(), nullptr) << line;
    }
}

}  // namespace
