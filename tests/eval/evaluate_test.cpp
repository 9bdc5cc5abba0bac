#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/material.h"
#include "eval/kingattack.h"
#include "eval/pawns.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"

namespace {

using EvaluateTest = EvalTest;

std::vector<int> PhasesAndFlags() {
    return {eval_info.current_phase, eval_info.black_phase, eval_info.white_phase, eval_info.ENDING[WHITE],
            eval_info.ENDING[BLACK]};
}

// The table's entry and the rules for material outside the table are the same.
TEST_F(EvaluateTest, PhasesAndEndingFlagsOfExamples) {
    for (const DataRow& row : ReadDataRows("evaluation.txt")) {
        LoadFEN(row.Fen.c_str());
        for (const uint32_t signature : {board.MaterialSignature, NO_SIGNATURE}) {
            board.MaterialSignature = signature;
            SetEndingFlags();
            EXPECT_EQ(PhasesAndFlags(), row.Numbers({"phases", "ending"})) << row.Fen;
        }
    }
}

// Neither what tables hold nor a call before changes a score, and a call changes nothing on the board.
TEST_F(EvaluateTest, DependsOnThePositionOnly) {
    std::vector<std::vector<int>> scores;
    for (const int entries : PawnHashSizes()) {
        UsePawnHash(entries);
        scores.emplace_back();
        const auto evaluate = [&] {
            const Board original = board;
            scores.back().push_back(Evaluation());
            EXPECT_EQ(Evaluation(), scores.back().back());
            EXPECT_TRUE(board == original);
            board.MaterialSignature = NO_SIGNATURE;
            EXPECT_EQ(Evaluation(), scores.back().back()) << "outside the material table";
            board = original;
        };
        VisitPositions(10'000 / WORK_DIVISOR, 3, evaluate);
        VisitRandomBoards(10'000 / WORK_DIVISOR, 4, evaluate);
        EXPECT_TRUE(scores.back() == scores.front()) << entries;
    }
}

// The defects of a side's pawns; those of both sides depend on which of them is looked at first.
std::pair<int, int> Defects(int side) {
    int opening = 0, ending = 0;
    EvaluatePawnStructure(&opening, &ending);
    return side == WHITE ? std::pair{pawn_cache.white_defects_k, pawn_cache.white_defects_q}
                         : std::pair{pawn_cache.black_defects_k, pawn_cache.black_defects_q};
}

TEST_F(EvaluateTest, IsTheSameForBothColours) {
    PawnConnected = {};  // its tables are different on purpose
    int compared = 0, leftOut = 0;
    const auto compare = [&] {
        EngineSide = ++compared % 2;
        const Board original = board;
        const auto white = Defects(WHITE), black = Defects(BLACK);
        const int score = Evaluation();
        Reflect(56);
        if (Defects(BLACK) == white && Defects(WHITE) == black) {
            EXPECT_EQ(Evaluation(), score);
        } else {
            ++leftOut;
        }
        board = original;
    };
    VisitPositions(20'000 / WORK_DIVISOR, 3, compare);
    VisitRandomBoards(20'000 / WORK_DIVISOR, 4, compare);
    EXPECT_LE(leftOut, compared / 100);
}

// Where all pieces are there and no ending interferes.
TEST_F(EvaluateTest, AddsUpItsTerms) {
    int exposed = 0, blocked = 0;
    VisitRandomBoards(10'000 / WORK_DIVISOR, 4, [&] {
        Evaluation();
        const EvalInfo& info = eval_info;
        if (std::min(board.PieceMaterial[WHITE], board.PieceMaterial[BLACK]) <= 14) return;
        if (board.PieceNumber[PAWN][WHITE] + board.PieceNumber[PAWN][BLACK] < 4 || info.margin != 6300)
            return;
        const auto taper = [](int opening, int ending, int phase) {
            return ((256 - phase) * opening + phase * ending) / 256;
        };
        int score = taper(info.opening + info.material, info.ending + info.material, info.current_phase) +
                    taper(info.side_opening[BLACK], info.side_ending[BLACK], info.black_phase) -
                    taper(info.side_opening[WHITE], info.side_ending[WHITE], info.white_phase);
        const int onMove = board.SideToMove == BLACK ? 1 : -1;
        const int whiteExposed = KingExposureOf(WHITE), blackExposed = KingExposureOf(BLACK);
        score += onMove > 0 ? whiteExposed - blackExposed / 2 : whiteExposed / 2 - blackExposed;
        exposed += whiteExposed + blackExposed;
        for (const int file : {3, 4}) {
            const bool white = HasMan(8 + file, WHITE, PAWN) && board.PieceOn[16 + file] != EMPTY;
            const bool black = HasMan(48 + file, BLACK, PAWN) && board.PieceOn[40 + file] != EMPTY;
            score += 25 * (white - black);
            blocked += white + black;
        }
        const int phase = info.current_phase, bonus = phase == 0 ? 9 : 8 - (phase - 1) / 64;
        EXPECT_EQ(info.score, score + onMove * (bonus + info.tempo[board.SideToMove]));
    });
    EXPECT_TRUE(exposed > 0 && blocked > 0);
}

// Scores are the side to move's.
TEST_F(EvaluateTest, Preferences) {
    const struct {
        const char *What, *Better, *Worse;
        int Difference;
    } rows[] = {
        {"a queen", "r3k3/pppp4/8/8/8/8/PPPP4/R2QK3 w - -", "r3k3/pppp4/8/8/8/8/PPPP4/R3K3 w - -", 400},
        {"two bishops", "r1b1k1nr/ppp2ppp/2n5/2b5/2B5/2N1B3/PPP2PPP/R3K2R w KQkq -",
         "r1b1k1nr/ppp2ppp/2n5/2b5/2N5/2N1B3/PPP2PPP/R3K2R w KQkq -", 10},
        {"a passed pawn far ahead", "5rk1/5ppp/3P4/8/8/8/5PPP/3R2K1 w - -",
         "5rk1/5ppp/8/8/3P4/8/5PPP/3R2K1 w - -", 20},
        {"a sheltered king", "2rq1rk1/5ppp/8/8/8/8/5PPP/2RQ1RK1 w - -",
         "2rq1rk1/5ppp/8/8/8/8/5PPP/1KRQ1R2 w - -", 30},
        {"a rook on an open file", "r5k1/ppp2ppp/8/8/8/8/PPP2PPP/3R2K1 w - -",
         "r5k1/ppp2ppp/8/8/8/8/PPP2PPP/1R4K1 w - -", 5},
    };
    for (const auto& [what, better, worse, difference] : rows) {
        LoadFEN(worse);
        const int less = Evaluation();
        LoadFEN(better);
        EXPECT_GT(Evaluation(), less + difference) << what;
    }
}

TEST_F(EvaluateTest, KnownScores) {
    const int start = Evaluation();
    EXPECT_EQ(start, 9 + eval_info.tempo[WHITE]) << "the start, where the bonus has one point more";
    LoadFEN("5rkq/5ppp/8/8/8/8/5PPP/1K3RQ1 w - -");
    Evaluation();
    EXPECT_GE(eval_info.optimism[BLACK], 74 + 40) << "an open king's shelter and its gap to the other's";
    LoadFEN("8/8/8/3k4/8/3P4/3P4/1K6 b - -");
    const int score = Evaluation();
    KingCutOffBonus = 0;
    EXPECT_EQ(Evaluation(), score) << "nobody is cut off from no pawns";
    LoadFEN("k7/7p/8/8/8/8/P7/7K w - -");
    EXPECT_EQ(Evaluation(), 0) << "a pawn each and nothing between them";
}

// Sums that only a board set up by hand can reach never look like a mate, and pawns may stand anywhere.
TEST_F(EvaluateTest, SurvivesImpossibleBoards) {
    for (const char* fen : {"kqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqq/qqqqqqqK w - -",
                            "PPPPPPPP/pppppppp/PPPPPPPP/pppppppp/PPPPPPPP/PPkPPPPP/pppKpppp/PPPPPPPP b - -",
                            "pppppppp/qqqqrrrr/bbbbnnnn/6k1/3K4/BBBBNNNN/QQQQRRRR/PPPPPPPP w - -"}) {
        LoadFEN(fen);
        EXPECT_LE(std::abs(Evaluation()), SCORE_LIMIT) << fen;
    }
}

}  // namespace
