#include "search/root.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "search/search.h"
#include "tests/search/searchtest.h"
#include "tests/support/positions.h"

namespace {

constexpr char MATE_IN_TWO[] = "6k1/3r3p/p1q3pP/1p1p4/3Q4/4R1P1/P4PK1/8 w - -";
constexpr char TWO_MATES_IN_ONE[] = "6k1/5ppp/8/8/8/8/8/RR5K w - -";
constexpr char ONE_MOVE[] = "7k/8/6K1/8/8/8/8/R7 b - -";

using RootTest = SearchTest;

TEST_F(RootTest, IteratesBelowTheDepthAsked) {
    for (const int depth : {-1, 0, 1}) {
        EXPECT_NE(Search(START, depth), "none");
        EXPECT_EQ(Nodes, 0);
    }
    Search(START, 5);
    EXPECT_EQ(IterationDepth, 4);
}

TEST_F(RootTest, AnOnlyMoveIsSearchedInAnalysisOnly) {
    for (MultiPvCount = 1; MultiPvCount < 4; ++MultiPvCount) {
        for (Analyzing = 1; Analyzing >= 0; --Analyzing) {
            EXPECT_EQ(Search(ONE_MOVE, 6), "h8g8");
            EXPECT_EQ(Nodes > 0, Analyzing == 1);
        }
        Analyzing = 0;
    }
}

TEST_F(RootTest, AMateWithinTheDepthEndsTheSearch) {
    EXPECT_EQ(Search(MATE_IN_TWO, 50), "d4h8");
    EXPECT_EQ(IterationDepth, 5);
    Search(MATE_IN_TWO, 1);
    EXPECT_EQ(RootScore, MATE - 3) << "as it was stored";
}

TEST_F(RootTest, MateSearchesEnd) {
    for (MultiPvCount = 1; MultiPvCount < 4; MultiPvCount += 2) {
        for (MateSearch = 1; MateSearch < 3; ++MateSearch) {
            Forget();
            EXPECT_NE(Search(MATE_IN_TWO, UNLIMITED_DEPTH), "none");
            EXPECT_EQ(RootScore, MateSearch == 2 ? MATE - 3 : 0);
            EXPECT_EQ(HashProbe() != nullptr && HashBound(*HashProbe()) == BOUND_EXACT, MateSearch == 2)
                << "bounds are not stored as scores";
        }
    }
}

TEST_F(RootTest, LinesAreDistinctAndSortedWheneverTheSearchEnds) {
    for (const char* fen : {START, EVERYTHING_AT_ONCE, MANY_QUEENS, CASTLING_IN_CHECK}) {
        for (const int limit : {1, 40, 700, 50'000}) {
            for (const int count : {2, 4, 1024}) {
                MultiPvCount = count;
                NodeLimit = limit;
                SetNoTimeLimit();
                Search(fen, 50);
                const int lines = std::min(count, RootMoveCount);
                EXPECT_TRUE(std::is_sorted(RootScores, RootScores + lines, std::greater<>())) << fen;
                std::set<Move> moves;
                for (int i = 0; i < RootMoveCount; ++i) moves.insert(RootMove(i));
                EXPECT_EQ(moves.size(), LegalMoves().size()) << fen << " " << limit;
            }
        }
    }
    NodeLimit = 0;
    MultiPvCount = 3;
    Search(TWO_MATES_IN_ONE, 3);
    EXPECT_TRUE(RootScores[1] == MATE - 1 && RootScores[2] < MATE - 1) << "every line has its own score";
}

}  // namespace
