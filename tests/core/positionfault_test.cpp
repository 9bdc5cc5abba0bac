#include "core/positionfault.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/board.h"
#include "core/fen.h"
#include "core/keys.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/perft.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using PositionFaultTest = CoreTest;

std::string FaultOf(const char* fen) {
    LoadFEN(fen);
    const char* fault = FindPositionFault();
    return fault == nullptr ? "" : fault;
}

TEST_F(PositionFaultTest, FindsNoneInGames) {
    for (const char* fen : NASTY_POSITIONS) EXPECT_EQ(FaultOf(fen), "") << fen;
    VisitPositions(5000 / WORK_DIVISOR, 61, [] {
        const Board before = board;
        ASSERT_TRUE(IsBoardConsistent());
        ASSERT_FALSE(HasPhantomMen());
        ASSERT_EQ(FindPositionFault(), nullptr);
        ASSERT_TRUE(board == before);
    });
}

TEST_F(PositionFaultTest, NamesEachFault) {
    EXPECT_EQ(FaultOf("8/8/8/8/8/8/8/8 w - -"), "White must have exactly one king");
    EXPECT_EQ(FaultOf("4k3/8/8/8/8/8/8/K3K3 w - -"), "White must have exactly one king");
    EXPECT_EQ(FaultOf("8/8/8/8/8/8/8/4K3 w - -"), "Black must have exactly one king");
    EXPECT_EQ(FaultOf("k1k1k3/8/8/8/8/8/8/4K3 w - -"), "Black must have exactly one king");
    EXPECT_EQ(FaultOf("P3k3/8/8/8/8/8/8/4K3 w - -"), "a pawn stands on the first or last rank");
    EXPECT_EQ(FaultOf("4k3/8/8/8/8/8/8/p3K3 b - -"), "a pawn stands on the first or last rank");
    EXPECT_EQ(FaultOf("4k3/pppppppp/p7/8/8/8/8/4K3 w - -"), "a side has more than eight pawns");
    EXPECT_EQ(FaultOf("4k3/8/8/8/8/QQQQQQQQ/QQQQQQQQ/4K3 b - -"), "a side has more than sixteen men");
    EXPECT_EQ(FaultOf("4k3/8/8/8/8/8/8/4R1K1 w - -"), "the side not to move is in check");
    EXPECT_EQ(FaultOf("4k3/8/8/8/8/8/8/4R1K1 b - -"), "");
    EXPECT_EQ(FaultOf("8/8/8/8/8/8/4k3/4K3 w - -"), "the side not to move is in check");
}

// A double step that no pawn can have made would let a capture en passant land on a man.
TEST_F(PositionFaultTest, RefusesADoubleStepThroughAMan) {
    for (const char* fen : {"4k3/8/3n4/3pP3/8/8/8/4K3 w - d5", "4k3/3n4/8/3pP3/8/8/8/4K3 w - d5",
                            "4k3/8/8/8/3Pp3/3N4/8/4K3 b - d4", "4k3/8/8/8/3Pp3/8/3N4/4K3 b - d4"}) {
        EXPECT_NE(FaultOf(fen), "") << fen;
    }
    EXPECT_EQ(FaultOf(EN_PASSANT_BOTH_SIDES), "");
    // A knight's home square is no home square of a pawn that never moved.
    ResetBoard();
    for (const char* move : {"e2e4", "d7d5", "g1e2"}) MakeMove(TextToMove(move), 1);
    EXPECT_EQ(FindPositionFault(), nullptr);
}

TEST_F(PositionFaultTest, SeesEveryFieldThatIsOff) {
    const Board good = board;
    const auto isConsistentAfter = [&](auto change) {
        board = good;
        change();
        return IsBoardConsistent();
    };
    EXPECT_TRUE(isConsistentAfter([] { board.Fifty = 3; }));
    EXPECT_TRUE(isConsistentAfter([] { board.PieceNumber[KING][WHITE] += 5; }));
    EXPECT_FALSE(isConsistentAfter([] { board.MajorCount[BLACK] += 1; }));
    EXPECT_FALSE(isConsistentAfter([] { board.PsqEnding += 1; }));
    EXPECT_FALSE(isConsistentAfter([] { board.MaterialSignature -= 1; }));
    EXPECT_FALSE(isConsistentAfter([] { board.DiagA1H8Occupancy[3] ^= 1; }));
    EXPECT_FALSE(isConsistentAfter([] { board.StraightSliders ^= 2; }));
    EXPECT_FALSE(isConsistentAfter([] { board.PawnHashKey ^= 1; }));
    EXPECT_FALSE(isConsistentAfter([] { board.Occupied[WHITE] |= board.Occupied[BLACK]; }));
    board = good;
}

}  // namespace
