#include "core/perft.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

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

// Walks the tree with the evasions in check and the staged generators elsewhere. In check it also follows
// castling, and everything below that is surplus.
LeafCount CountLeaves(int depth) {
    const bool isInCheck = IsKingAttacked(board.SideToMove);
    const int start = MoveListTop;
    isInCheck ? GenerateEvasions() : GenerateAllStages();
    const int surplusStart = MoveListTop;
    if (isInCheck && board.CastlingFlags != 0) {
        for (const Move move : MovesOf([] { GenerateQuiet(0); })) {
            if (IsCastling(move)) AppendMove(move, 0);
        }
    }
    LeafCount sum;
    for (int i = start; i < MoveListTop; ++i) {
        const Move move = MoveList[i].Move;
        if (!LeavesKingSafe(move)) continue;
        LeafCount below{1, 0};
        if (depth > 1) {
            MakeMove(move, 1);
            below = CountLeaves(depth - 1);
            UnmakeMove();
        }
        sum.Legal += i < surplusStart ? below.Legal : 0;
        sum.Surplus += i < surplusStart ? below.Surplus : below.Legal + below.Surplus;
    }
    MoveListTop = start;
    return sum;
}

// A position with its published numbers of leaf moves, ascending by depth.
struct PerftRow {
    std::string Fen;
    struct Count {
        int Depth;
        uint64_t Leaves;
    };
    std::vector<Count> Counts;
};

// Reads "FEN;D<depth> <leaves>;...". The common en-passant field, the square behind the pawn, becomes the
// pawn's own square.
PerftRow ReadPerftRow(const std::string& line) {
    std::istringstream fields(line);
    PerftRow row;
    std::getline(fields, row.Fen, ';');
    std::vector<std::string> words = SplitWords(row.Fen);
    EXPECT_GE(words.size(), 4u) << line;
    if (words[3].ends_with('6')) words[3][1] = '5';
    if (words[3].ends_with('3')) words[3][1] = '4';
    row.Fen = JoinWords(words);
    for (std::string field; std::getline(fields, field, ';');) {
        char letter = 0;
        PerftRow::Count count{};
        std::istringstream(field) >> letter >> count.Depth >> count.Leaves;
        EXPECT_TRUE(letter == 'D' && count.Depth > 0) << line;
        row.Counts.push_back(count);
    }
    EXPECT_FALSE(row.Counts.empty()) << line;
    return row;
}

#ifdef KESTROVAN_SANITIZED
constexpr bool RUNS_LARGE_ROWS = false;
#else
constexpr bool RUNS_LARGE_ROWS = true;
#endif

// Runs the rows of a suite, each to its deepest published depth within the budget of leaf moves; rows with
// none are run to their least depth or skipped.
void RunSuite(const char* name, uint64_t budget, bool runsLargeRows) {
    budget /= WORK_DIVISOR;
    uint64_t surplus = 0;
    int run = 0;
    for (const std::string& line : ReadDataLines(name)) {
        const PerftRow row = ReadPerftRow(line);
        PerftRow::Count chosen{};
        for (const PerftRow::Count& count : row.Counts) {
            if (count.Leaves <= budget || (runsLargeRows && chosen.Depth == 0)) chosen = count;
        }
        if (chosen.Depth == 0) continue;
        ++run;
        LoadFEN(row.Fen.c_str());
        const Board before = board;
        const LeafCount walked = CountLeaves(chosen.Depth);
        EXPECT_EQ(walked.Legal, chosen.Leaves) << row.Fen << " depth " << chosen.Depth;
        EXPECT_EQ(static_cast<uint64_t>(Perft(chosen.Depth)), chosen.Leaves + walked.Surplus)
            << row.Fen << " depth " << chosen.Depth << ", surplus " << walked.Surplus;
        EXPECT_TRUE(board == before) << row.Fen;
        surplus += walked.Surplus;
    }
    EXPECT_GT(run, 0);
    testing::Test::RecordProperty("rows", run);
    testing::Test::RecordProperty("surplus", std::to_string(surplus));
}

using PerftTest = CoreTest;
using PerftSlowTest = CoreTest;

constexpr uint64_t FAST_BUDGET = 200'000, SLOW_BUDGET = 5'000'000;

TEST_F(PerftTest, StandardSuite) {
    RunSuite("perft/standard.epd", FAST_BUDGET, false);
}
TEST_F(PerftTest, Corners) {
    RunSuite("perft/corners.epd", FAST_BUDGET, false);
}
TEST_F(PerftTest, TrickyPositions) {
    RunSuite("perft/tricky.epd", FAST_BUDGET, true);
}
TEST_F(PerftSlowTest, StandardSuite) {
    RunSuite("perft/standard.epd", SLOW_BUDGET, RUNS_LARGE_ROWS);
}
TEST_F(PerftSlowTest, Corners) {
    RunSuite("perft/corners.epd", SLOW_BUDGET, RUNS_LARGE_ROWS);
}

TEST_F(PerftTest, CountsCastlingOutOfCheck) {
    LoadFEN(CASTLING_IN_CHECK);
    EXPECT_EQ(CountLeaves(1).Surplus, 2u) << "the rook on e5 leaves both castlings' squares alone";
    const LeafCount walked = CountLeaves(3);
    EXPECT_EQ(static_cast<uint64_t>(Perft(3)), walked.Legal + walked.Surplus);
}

TEST_F(PerftTest, HasNoLeavesBelowDepthOne) {
    EXPECT_EQ(Perft(0), 0);
    EXPECT_EQ(Perft(-3), 0);
    LoadFEN(MATED);
    EXPECT_EQ(Perft(4), 0);
}

}  // namespace
