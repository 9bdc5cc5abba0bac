#include "frontend/bench.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "frontend/benchpositions.h"
#include "frontend/hashtables.h"
#include "frontend/newgame.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/root.h"
#include "search/timecontrol.h"
#include "search/transposition.h"
#include "tests/support/pipeinput.h"
#include "tests/support/walker.h"

namespace {

class BenchTest : public CoreTest {};

TEST_F(BenchTest, PositionsCanBeSearched) {
    EXPECT_EQ(std::set<std::string>(std::begin(BENCH_POSITIONS), std::end(BENCH_POSITIONS)).size(),
              std::size(BENCH_POSITIONS));
    for (const std::string fen : BENCH_POSITIONS) {
        LoadFEN(fen.c_str());
        EXPECT_EQ(FindPositionFault(), nullptr) << fen;
        EXPECT_GE(LegalMoves().size(), 2u) << fen;
        // Every field of the text has been understood.
        EXPECT_EQ(HistoryLength, fen.ends_with(" -") ? 0 : 1) << fen;
        EXPECT_EQ(board.CastlingFlags != 0, fen.find(" - ") == std::string::npos) << fen;
    }
}

// A bench that is stopped in its first search leaves everything as it was, but for what input has changed.
TEST_F(BenchTest, BringsTheSettingsBack) {
    HashEntries = PawnHashEntries = 16;
    AllocateHashTables();
    NewGame();
    const Move move = TextToMove("e2e4");
    PlayMove(move);
    const Board boardBefore = board;
    int* const variables[] = {&HashEntries,  &PawnHashEntries, &UciMode,     &PostMode,   &MoveTime,
                              &MaxDepth,     &NodeLimit,       &MateSearch,  &EngineSide, &EngineTime,
                              &GameSearches, &DrawScore,       &OpponentTime};
    int value = 20;
    for (int* variable : variables) *variable = value++;
    SetAggressivity(30);
    SetCowardice(40);
    SetTropism(-50);

    const PipeInput input("otim 77\nstop\n");
    RunBench();
    OpponentTime = OpponentTime == 77 ? value - 1 : 0;
    value = 20;
    for (const int* variable : variables) EXPECT_EQ(*variable, value++);
    EXPECT_EQ(Aggressivity.Raw, 30);
    EXPECT_EQ(Cowardice.Raw, 40);
    EXPECT_EQ(Tropism.Scaled, -100);
    EXPECT_TRUE(board == boardBefore);
    EXPECT_EQ(LastMove(), move);
    TakeBackMove();
    EXPECT_EQ(LegalMoves().size(), 20u);

    UciMode = PostMode = MoveTime = NodeLimit = MateSearch = DrawScore = OpponentTime = GameSearches = 0;
    EngineTime = NO_CLOCK;
    MaxDepth = UNLIMITED_DEPTH;
    for (const auto set : {SetAggressivity, SetCowardice, SetTropism}) set(100);
    FreeHashTables();
    HashEntries = PawnHashEntries = 0;
}

}  // namespace
