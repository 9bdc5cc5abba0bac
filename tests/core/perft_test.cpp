#include "core/perft.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

// Counts with the evasions in check and the staged generators elsewhere.
uint64_t CountLeaves(int depth) {
    uint64_t leaves = 0;
    for (const Move move : LegalMoves()) {
        if (depth == 1) {
            ++leaves;
            continue;
        }
        MakeMove(move, 1);
        leaves += CountLeaves(depth - 1);
        UnmakeMove();
    }
    return leaves;
}

// Puts the position of a row "FEN;D<depth> <leaves>;..." on the board and returns the depths, ascending, with
// their published numbers.
std::vector<std::pair<int, uint64_t>> LoadPerftRow(const std::string& row) {
    std::istringstream fields(row);
    std::string field;
    std::getline(fields, field, ';');
    LoadCommonFEN(field.c_str());
    std::vector<std::pair<int, uint64_t>> counts;
    while (std::getline(fields, field, ';')) {
        char letter = 0;
        auto& [depth, leaves] = counts.emplace_back();
        std::istringstream(field) >> letter >> depth >> leaves;
        EXPECT_TRUE(letter == 'D' && depth > 0) << row;
    }
    return counts;
}

#ifdef KESTROVAN_SANITIZED
constexpr bool RUNS_LARGE_ROWS = false;
#else
constexpr bool RUNS_LARGE_ROWS = true;
#endif

// Runs the rows of a suite, each to its deepest published depth within the budget of leaf moves; rows with
// none are run to their least depth or skipped.
void RunSuite(const char* name, uint64_t budget, bool runsLargeRows) {
    int run = 0;
    for (const std::string& row : ReadDataLines(name)) {
        int depth = 0;
        uint64_t leaves = 0;
        for (const auto& count : LoadPerftRow(row)) {
            if (count.second <= budget / WORK_DIVISOR || (runsLargeRows && depth == 0))
                std::tie(depth, leaves) = count;
        }
        if (depth == 0) continue;
        ++run;
        EXPECT_EQ(CountLeaves(depth), leaves) << row << " depth " << depth;
        // It castles out of check, too; deliberate.
        const auto counted = static_cast<uint64_t>(Perft(depth));
        EXPECT_TRUE(counted == leaves || (counted > leaves && board.CastlingFlags != 0))
            << row << " depth " << depth << ": " << counted;
    }
    EXPECT_GT(run, 0);
}

using PerftTest = CoreTest;
using PerftSlowTest = CoreTest;

constexpr uint64_t FAST_BUDGET = 200'000, SLOW_BUDGET = 5'000'000;

TEST_F(PerftTest, BothSuites) {
    for (const char* name : {"perft/standard.epd", "perft/corners.epd"}) RunSuite(name, FAST_BUDGET, false);
}
TEST_F(PerftTest, TrickyPositions) {
    RunSuite("perft/tricky.epd", FAST_BUDGET, true);
}
TEST_F(PerftSlowTest, BothSuites) {
    for (const char* name : {"perft/standard.epd", "perft/corners.epd"})
        RunSuite(name, SLOW_BUDGET, RUNS_LARGE_ROWS);
}

// The rook on e5 leaves both castlings' squares alone.
TEST_F(PerftTest, CountsCastlingOutOfCheck) {
    LoadFEN(CASTLING_IN_CHECK);
    EXPECT_EQ(static_cast<uint64_t>(Perft(1)), CountLeaves(1) + 2);
}

TEST_F(PerftTest, HasNoLeavesBelowDepthOne) {
    for (const int depth : {0, -3}) EXPECT_EQ(Perft(depth), 0);
}

}  // namespace
