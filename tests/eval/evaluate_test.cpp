#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "tests/support/datafile.h"
#include "tests/support/walker.h"

namespace {

using EvaluateTest = CoreTest;

int Evaluation() {
    int result = -32700;
    Evaluate(&result);
    return result;
}

// Puts the position with colours exchanged on the board.
void MirrorBoard() {
    const Board original = board;
    ClearBoard();
    for (int square = 0; square < 64; ++square) {
        if (original.PieceOn[square] == EMPTY) continue;
        const int side = (original.Occupied[WHITE] & SquareBit(square)) != 0 ? WHITE : BLACK;
        AddPiece(square ^ 56, ChangeSide(side), original.PieceOn[square]);
    }
    board.SideToMove = ChangeSide(original.SideToMove);
    board.CastlingFlags = original.CastlingFlags >> 2 | (original.CastlingFlags & 3) << 2;
}

TEST_F(EvaluateTest, PhasesAndEndingFlags) {
    for (const DataRow& row : ReadDataRows("phases.txt")) {
        LoadFEN(row.Fen.c_str());
        Evaluation();
        const auto text = [](int number) { return std::to_string(number); };
        EXPECT_EQ(row.Values("phases"),
                  (std::vector{text(eval_info.current_phase), text(eval_info.black_phase),
                               text(eval_info.white_phase)}))
            << row.Fen;
        EXPECT_EQ(row.Values("ending"),
                  (std::vector{text(eval_info.ENDING[WHITE]), text(eval_info.ENDING[BLACK])}))
            << row.Fen;
    }
}

TEST_F(EvaluateTest, IsTheSameForBothColours) {
    const auto compare = [] {
        const Board original = board;
        EngineSide = WHITE;
        const int score = Evaluation();
        EXPECT_EQ(Evaluation(), score) << "the second time";
        EXPECT_TRUE(board == original) << "evaluation changes nothing";
        MirrorBoard();
        EngineSide = BLACK;
        EXPECT_EQ(Evaluation(), score) << GetFEN();
        board = original;
    };
    // White's connected pawns read another entry than Black's.
    PawnConnected = {};
    ClearPawnHash();
    VisitPositions(20'000 / WORK_DIVISOR, 3, compare);
    InitWeights();
}

// Scores are the side to move's, and men count.
TEST_F(EvaluateTest, PrefersToHaveMoreMen) {
    const struct {
        const char *Better, *Worse;
    } rows[] = {
        {"r3k3/pppp4/8/8/8/8/PPPP4/R2QK3 w - -", "r3k3/pppp4/8/8/8/8/PPPP4/R3K3 w - -"},
        {"r2qk3/pppp4/8/8/8/8/PPPP4/R3K3 b - -", "r3k3/pppp4/8/8/8/8/PPPP4/R3K3 b - -"},
        {"4k3/8/8/8/8/8/4R3/4K3 w - -", "4k3/8/8/8/8/8/4B3/4K3 w - -"},
    };
    for (const auto& [better, worse] : rows) {
        LoadFEN(worse);
        const int less = Evaluation();
        LoadFEN(better);
        EXPECT_GT(Evaluation(), less + 50) << better;
    }
}

// Sums that only a board set up by hand can reach never look like a mate.
TEST_F(EvaluateTest, StaysBelowMateScores) {
    LoadFEN("kqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqK w - -");
    EXPECT_LE(std::abs(Evaluation()), 30000);
}

}  // namespace
