#include "core/perft.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movelist.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

// Leaf moves: those of chess, and those that Perft counts on top of them.
struct LeafCount {
    uint64_t Legal = 0;
    uint64_t Surplus = 0;  // below castling out of check
};

bool IsCastling(Move move) {
    return MovePiece(move) == KING && std::abs(MoveTo(move) - MoveFrom(move)) == 2;
}

LeafCount CountLeaves(int depth);

LeafCount CountBelow(Move move, int depth) {
    if (!LeavesKingSafe(move)) return {};
    if (depth == 1) return {1, 0};
    MakeMove(move, 1);
    const LeafCount count = CountLeaves(depth - 1);
    UnmakeMove();
    return count;
}

// Walks the tree with the evasions in check and the staged generators elsewhere. In check it also follows
// castling, and everything below that is surplus.
LeafCount CountLeaves(int depth) {
    LeafCount sum;
    const bool isInCheck = IsKingAttacked(board.SideToMove);
    const int start = MoveListTop;
    isInCheck ? GenerateEvasions() : GenerateAllStages();
    for (int i = start; i < MoveListTop; ++i) {
        const LeafCount count = CountBelow(MoveList[i].Move, depth);
        sum.Legal += count.Legal;
        sum.Surplus += count.Surplus;
    }
    MoveListTop = start;
    if (!isInCheck || board.CastlingFlags == 0) return sum;
    GenerateQuiet(0);
    for (int i = start; i < MoveListTop; ++i) {
        if (!IsCastling(MoveList[i].Move)) continue;
        const LeafCount count = CountBelow(MoveList[i].Move, depth);
        sum.Surplus += count.Legal + count.Surplus;
    }
    MoveListTop = start;
    return sum;
}

enum class Rows { SKIP_LARGE, RUN_ALL };

// Runs the rows of a suite, each to its deepest published depth within the budget of leaf moves, or to the
// least when it is RUN_ALL that matters.
void RunSuite(const char* name, uint64_t budget, Rows rows) {
    budget /= WORK_DIVISOR;
    uint64_t surplus = 0;
    int run = 0;
    for (const PerftRow& row : ReadPerftRows(name)) {
        const PerftRow::Count* chosen = nullptr;
        for (const PerftRow::Count& count : row.Counts) {
            if (count.Leaves <= budget || (rows == Rows::RUN_ALL && chosen == nullptr)) chosen = &count;
        }
        if (chosen == nullptr) continue;
        ++run;
        LoadFEN(row.Fen.c_str());
        const Board before = board;
        const LeafCount walked = CountLeaves(chosen->Depth);
        EXPECT_EQ(walked.Legal, chosen->Leaves) << "walk: " << row.Fen << " depth " << chosen->Depth;
        EXPECT_EQ(static_cast<uint64_t>(Perft(chosen->Depth)), chosen->Leaves + walked.Surplus)
            << "Perft, " << walked.Surplus << " below castling out of check: " << row.Fen << " depth "
            << chosen->Depth;
        EXPECT_TRUE(board == before) << row.Fen;
        surplus += walked.Surplus;
    }
    EXPECT_GT(run, 0);
    testing::Test::RecordProperty("rows", run);
    testing::Test::RecordProperty("surplus", std::to_string(surplus));
}

using PerftTest = CoreTest;
using PerftSlowTest = CoreTest;

#ifdef KESTROVAN_SANITIZED
constexpr Rows EVERY_ROW = Rows::SKIP_LARGE;
#else
constexpr Rows EVERY_ROW = Rows::RUN_ALL;
#endif

constexpr uint64_t FAST_BUDGET = 200'000, SLOW_BUDGET = 5'000'000;

TEST_F(PerftTest, StandardSuite) {
    RunSuite("perft/standard.epd", FAST_BUDGET, Rows::SKIP_LARGE);
}
TEST_F(PerftTest, Corners) {
    RunSuite("perft/corners.epd", FAST_BUDGET, Rows::SKIP_LARGE);
}
TEST_F(PerftTest, TrickyPositions) {
    RunSuite("perft/tricky.epd", FAST_BUDGET, Rows::RUN_ALL);
}
TEST_F(PerftSlowTest, StandardSuite) {
    RunSuite("perft/standard.epd", SLOW_BUDGET, EVERY_ROW);
}
TEST_F(PerftSlowTest, Corners) {
    RunSuite("perft/corners.epd", SLOW_BUDGET, EVERY_ROW);
}

TEST_F(PerftTest, CountsCastlingOutOfCheck) {
    LoadFEN(CASTLING_IN_CHECK);
    const LeafCount walked = CountLeaves(1);
    // The rook on e5 leaves both castlings' squares alone.
    EXPECT_EQ(walked.Surplus, 2u);
    EXPECT_EQ(static_cast<uint64_t>(Perft(1)), walked.Legal + 2);
    const LeafCount deeper = CountLeaves(3);
    EXPECT_GT(deeper.Surplus, walked.Surplus);
    EXPECT_EQ(static_cast<uint64_t>(Perft(3)), deeper.Legal + deeper.Surplus);
}

TEST_F(PerftTest, HasNoLeavesBelowDepthOne) {
    EXPECT_EQ(Perft(0), 0);
    EXPECT_EQ(Perft(-3), 0);
    LoadFEN(MATED);
    EXPECT_EQ(Perft(4), 0);
    LoadFEN(STALEMATE);
    EXPECT_EQ(Perft(1), 0);
}

}  // namespace
