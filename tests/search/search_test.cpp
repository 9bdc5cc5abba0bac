#include "search/search.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/plyinfo.h"
#include "search/root.h"
#include "tests/search/searchtest.h"
#include "tests/support/positions.h"

namespace {

TEST_F(SearchTest, SeesDraws) {
    // A queen down, White goes on checking for ever.
    Search("6k1/6p1/8/7Q/8/8/qr6/6K1 w - -", 8);
    EXPECT_EQ(RootScore, 0);
    EXPECT_EQ(Search(STALEMATE, 3), "none");
    EXPECT_EQ(Search(MATED, 3), "none");
}

TEST_F(SearchTest, IsNotMisledByDevicesThatSaveWork) {
    Search("8/8/1KP5/3r4/8/8/8/k7 w - -", 30);
    EXPECT_GT(RootScore, 500) << "a draw that can be had at once hides the win";
    Forget();
    Search("8/8/8/8/8/p2N4/k1K5/8 w - -", 12);
    EXPECT_EQ(RootScore, MATE - 5) << "a knight mates a king that its own pawn shuts in";
    Forget();
    Search("8/8/1k6/8/8/7Q/2R5/7K w - -", 4);
    EXPECT_LT(Nodes, 50'000) << "checks chase the king without end";
}

TEST_F(SearchTest, LeavesEverythingAsItWas) {
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        const Board before = board;
        const int length = HistoryLength;
        const std::string move = SearchBoard(5);
        EXPECT_TRUE(board == before) << fen;
        EXPECT_EQ(HistoryLength, length) << fen;
        EXPECT_EQ(Ply, 0) << fen;
        EXPECT_EQ(MoveListTop, RootMoveCount) << fen;
        EXPECT_TRUE(move == "none" || IsLegalMove(RootMove(0))) << fen;
        // The same when it is cut short anywhere.
        for (const int limit : {1, 37, 1001, 20'000}) {
            NodeLimit = limit;
            SetNoTimeLimit();
            if (SearchBoard(50) == "none") break;
            EXPECT_TRUE(board == before) << fen << " after " << limit;
            EXPECT_TRUE(IsLegalMove(RootMove(0))) << fen;
            EXPECT_LE(Nodes, limit + 100) << fen;
        }
        NodeLimit = 0;
        SetNoTimeLimit();
    }
}

}  // namespace
