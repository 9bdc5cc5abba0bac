#include "search/node.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/makemove.h"
#include "core/psqt.h"
#include "eval/evaluate.h"
#include "search/futility.h"
#include "search/materialwindow.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/search.h"
#include "tests/search/searchtest.h"
#include "tests/support/positions.h"

namespace {

class NodeTest : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        ClearRequests();
        PollCountdown = 1'000'000;
        Ply = 1;
        PlyInfo[1].InCheck = 0;
    }
    void TearDown() override {
        Ply = DrawScore = 0;
        SearchTest::TearDown();
    }
};

// On a board whose squares are all alike.
TEST_F(NodeTest, AGainIsWhatTheMoveChangesAtOnce) {
    const std::vector<PsqEntry> table(PsqTable, PsqTable + PSQ_ENTRIES);
    std::fill_n(PsqTable, PSQ_ENTRIES, PsqEntry{});
    VisitPositions(2000 / WORK_DIVISOR, 9, [] {
        const int us = board.SideToMove;
        const auto lead = [&] { return board.Material[us] - board.Material[ChangeSide(us)]; };
        for (const Move move : LegalMoves()) {
            const int gain = EstimateGain(move, false) + lead(), lost = EstimateGain(move, true) + lead();
            MakeMove(move, 1);
            EXPECT_EQ(gain, lead()) << MoveToText(move);
            EXPECT_EQ(lost, lead() - PieceValue[MovePiece(move)]) << MoveToText(move);
            UnmakeMove();
        }
    });
    std::copy(table.begin(), table.end(), PsqTable);
}

TEST_F(NodeTest, MaterialThatDecidesFadesToo) {
    LoadFEN("4k3/8/8/8/8/8/8/QR2K3 w - -");
    EngineSide = WHITE;
    MaterialLow = -1000;
    MaterialHigh = 1000;
    board.Fifty = 58;
    NodeEvaluation evaluation;
    EvaluateNode(&evaluation);
    EXPECT_TRUE(evaluation.IsLazy && evaluation.Score == 1400 * 156 / 256) << evaluation.Score;
}

TEST_F(NodeTest, PassingShowsAMateThreat) {
    MaterialLow = -20'000;
    MaterialHigh = 20'000;
    for (const bool hasThreat : {false, true}) {
        LoadFEN(hasThreat ? "1r4k1/5ppp/8/7R/7R/8/5PPP/6K1 w - -" : "1r4k1/5ppp/8/7R/7R/8/5PP1/6K1 w - -");
        ::Search(-1, 0, 300, 1, 1);
        ASSERT_NE(HashProbe(), nullptr);
        EXPECT_EQ(HashMateThreat(*HashProbe()), hasThreat);
    }
}

TEST_F(NodeTest, EndsCountFromTheRootAndDrawsForTheEngine) {
    DrawScore = -25;
    for (const int side : {WHITE, BLACK}) {
        EngineSide = side;
        LoadFEN(STALEMATE);
        const int draw = side == BLACK ? -25 : 25;
        Ply = 1;
        EXPECT_EQ(::Search(-1000, 1000, 120, 1, 0), draw);
        board.Fifty = 100;
        EXPECT_EQ(Quiesce(-1000, 1000, 0, 0), draw);
        LoadFEN(MATED);
        for (Ply = 1; Ply < 100; Ply += 7) {
            PlyInfo[Ply].InCheck = 1;
            ClearHash();
            EXPECT_EQ(::Search(-MATE, MATE, 120, 1, 0), Ply - MATE);
            EXPECT_EQ(Quiesce(-MATE, MATE, 0, 0), Ply - MATE);
            PlyInfo[Ply].InCheck = 0;
        }
    }
}

}  // namespace
