#pragma once

#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/movescore.h"
#include "core/movetext.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/ordering.h"
#include "search/root.h"
#include "search/timecontrol.h"
#include "search/transposition.h"
#include "tests/support/pipeinput.h"
#include "tests/support/walker.h"

// Searches of a silent engine whose input is open and empty.
class SearchTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        HashEntries = 1 << 14;
        ASSERT_TRUE(AllocateTransposition());
        Forget();
        NodeLimit = MateSearch = SearchMovesCount = DrawScore = UciMode = PostMode = Analyzing = 0;
        MultiPvCount = 1;
        EngineTime = NO_CLOCK;
        SetNoTimeLimit();
    }
    void TearDown() override {
        FreeTransposition();
        HashEntries = NodeLimit = MateSearch = UciMode = PostMode = 0;
        MultiPvCount = 1;
        ResetBoard();
    }

    static void Forget() {
        ClearHash();
        ClearOrdering();
        ClearCheckReplies();
        ClearRecaptureStatistics();
        ResetRootMemory();
    }

    // Searches a position; returns the best move.
    static std::string Search(const char* fen, int depth) {
        LoadFEN(fen);
        return SearchBoard(depth);
    }

    static std::string SearchBoard(int depth) {
        ClearRequests();
        StartSearchClock();
        return IterativeDeepening(depth, 0) == 0 ? MoveToText(RootMove(0)) : "none";
    }

  private:
    PipeInput input_;
};
