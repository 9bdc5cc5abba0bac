#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/material.h"
#include "eval/kingattack.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"
#include "tests/support/slowpawns.h"

namespace {

struct BothScores {
    int Original, Mirrored;
    bool HaveSameDefects;
};

class EvaluateTest : public EvalTest {
  protected:
    // Scores of the position and of the one with colours exchanged; the board is left as it was.
    static BothScores EvaluateBoth() {
        const Board original = board;
        BothScores both{};
        const SlowPawns pawns = TellPawns(SlowPosition::FromBoard());
        both.Original = Evaluation();
        Reflect(56);
        const SlowPawns mirrored = TellPawns(SlowPosition::FromBoard());
        both.Mirrored = Evaluation();
        both.HaveSameDefects =
            std::equal(pawns.Defects[WHITE], pawns.Defects[WHITE] + 2, mirrored.Defects[BLACK]) &&
            std::equal(pawns.Defects[BLACK], pawns.Defects[BLACK] + 2, mirrored.Defects[WHITE]);
        board = original;
        EngineSide = ChangeSide(EngineSide);
        return both;
    }
};

std::vector<int> PhasesAndFlags() {
    return {eval_info.current_phase, eval_info.black_phase, eval_info.white_phase, eval_info.ENDING[WHITE],
            eval_info.ENDING[BLACK]};
}

TEST_F(EvaluateTest, PhasesAndEndingFlagsOfExamples) {
    for (const DataRow& row : ReadDataRows("evaluation.txt")) {
        LoadFEN(row.Fen.c_str());
        Evaluation();
        std::vector<int> expected;
        for (const char* key : {"phases", "ending"}) {
            for (const std::string& value : row.Values(key)) expected.push_back(std::stoi(value));
        }
        EXPECT_EQ(PhasesAndFlags(), expected) << row.Fen;
    }
}

// The table's entry and the rules for material outside the table are the same, and they are those of the men.
TEST_F(EvaluateTest, PhasesAndMaterialFollowTheMen) {
    const auto compare = [] {
        int army[2]{}, units[2]{}, queens[2]{};
        for (const auto& [piece, side] : SlowPosition::FromBoard().Men) {
            army[side] += piece == QUEEN ? 4 : piece == ROOK ? 2 : piece == KNIGHT || piece == BISHOP ? 1 : 0;
            units[side] += piece == QUEEN                       ? 9
                           : piece == ROOK                      ? 5
                           : piece == KNIGHT || piece == BISHOP ? 3
                                                                : 0;
            queens[side] += piece == QUEEN;
        }
        const auto phase = [](int present, int full) {
            return (std::max(0, full - present) * 256 + full / 2) / full;
        };
        const auto isEnding = [&](int enemy) { return units[enemy] <= (queens[enemy] > 0 ? 9 : 14) ? 1 : 0; };
        const std::vector expected{phase(army[WHITE] + army[BLACK], 24), phase(army[BLACK], 12),
                                   phase(army[WHITE], 12), isEnding(BLACK), isEnding(WHITE)};
        const Board original = board;
        const int score = Evaluation(), material = eval_info.material;
        for (const uint32_t signature : {original.MaterialSignature, NO_SIGNATURE}) {
            board.MaterialSignature = signature;
            EXPECT_EQ(Evaluation(), score);
            EXPECT_EQ(eval_info.material, material);
            SetEndingFlags();
            EXPECT_EQ(PhasesAndFlags(), expected);
        }
        board = original;
    };
    VisitPositions(10'000 / WORK_DIVISOR, 3, compare);
    VisitRandomBoards(10'000 / WORK_DIVISOR, 4, compare);
}

// Neither what caches hold nor a call before changes a score, and a call changes nothing on the board.
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
        };
        VisitPositions(10'000 / WORK_DIVISOR, 3, evaluate);
        VisitRandomBoards(10'000 / WORK_DIVISOR, 4, evaluate);
        EXPECT_TRUE(scores.back() == scores.front()) << entries;
    }
}

// Takes out the weight that deliberately has different tables for the two sides.
void LevelColours() {
    PawnConnected = {};
}

TEST_F(EvaluateTest, IsTheSameForBothColours) {
    LevelColours();
    int compared = 0, leftOut = 0;
    const auto compare = [&] {
        EngineSide = ++compared % 2;
        const BothScores scores = EvaluateBoth();
        if (scores.HaveSameDefects) {
            EXPECT_EQ(scores.Mirrored, scores.Original);
        } else {
            ++leftOut;
        }
    };
    VisitPositions(20'000 / WORK_DIVISOR, 3, compare);
    VisitRandomBoards(20'000 / WORK_DIVISOR, 4, compare);
    EXPECT_LE(leftOut, compared / 100);
}

TEST_F(EvaluateTest, IsDifferentForTheColoursWhereItMeansToBe) {
    constexpr char CONNECTED[] = "2rrk3/8/PP6/8/8/8/8/2RRK3 w - -";
    constexpr char DEFECTS[] = "r2q1rk1/6pp/5p2/8/8/7P/6P1/R2Q1RK1 w - -";
    LoadFEN(CONNECTED);
    BothScores scores = EvaluateBoth();
    EXPECT_NE(scores.Original, scores.Mirrored);
    LevelColours();
    scores = EvaluateBoth();
    EXPECT_EQ(scores.Original, scores.Mirrored);
    LoadFEN(DEFECTS);
    scores = EvaluateBoth();
    EXPECT_NE(scores.Original, scores.Mirrored);
}

// From the taper to the bonus, where all pieces are there and no ending interferes.
TEST_F(EvaluateTest, AddsUpItsTerms) {
    int exposed = 0, blocked = 0;
    const auto compare = [&] {
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
    };
    VisitRandomBoards(10'000 / WORK_DIVISOR, 4, compare);
    EXPECT_TRUE(exposed > 0 && blocked > 0);
}

// Scores are the side to move's.
TEST_F(EvaluateTest, Preferences) {
    const struct {
        const char *What, *Better, *Worse;
        int Difference;
    } rows[] = {
        {"a queen", "r3k3/pppp4/8/8/8/8/PPPP4/R2QK3 w - -", "r3k3/pppp4/8/8/8/8/PPPP4/R3K3 w - -", 400},
        {"the same for Black", "r2qk3/pppp4/8/8/8/8/PPPP4/R3K3 b - -", "r3k3/pppp4/8/8/8/8/PPPP4/R3K3 b - -",
         400},
        {"a rook for a bishop", "4k3/8/8/8/8/8/4R3/4K3 w - -", "4k3/8/8/8/8/8/4B3/4K3 w - -", 50},
        {"two bishops", "r1b1k1nr/ppp2ppp/2n5/2b5/2B5/2N1B3/PPP2PPP/R3K2R w KQkq -",
         "r1b1k1nr/ppp2ppp/2n5/2b5/2N5/2N1B3/PPP2PPP/R3K2R w KQkq -", 10},
        {"a passed pawn far ahead", "5rk1/5ppp/3P4/8/8/8/5PPP/3R2K1 w - -",
         "5rk1/5ppp/8/8/3P4/8/5PPP/3R2K1 w - -", 20},
        {"a sheltered king", "2rq1rk1/5ppp/8/8/8/8/5PPP/2RQ1RK1 w - -",
         "2rq1rk1/5ppp/8/8/8/8/5PPP/1KRQ1R2 w - -", 30},
        {"a rook on an open file", "r5k1/ppp2ppp/8/8/8/8/PPP2PPP/3R2K1 w - -",
         "r5k1/ppp2ppp/8/8/8/8/PPP2PPP/1R4K1 w - -", 5},
        {"pawns side by side", "r5k1/ppp2ppp/8/8/8/8/PPP2PPP/R5K1 w - -",
         "r5k1/ppp2ppp/8/8/8/2P5/P1P2PPP/R5K1 w - -", 5},
        {"a pawn that nobody stops", "8/8/P7/8/6pk/8/8/6K1 w - -", "7k/8/8/8/8/8/8/K7 w - -", 400},
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
    EXPECT_GE(eval_info.optimism[BLACK], 74 + 40) << "an open king's shelter and its distance from the other";
    LoadFEN("8/8/8/3k4/8/3P4/3P4/1K6 b - -");
    const int score = Evaluation();
    KingCutOffBonus = 0;
    EXPECT_EQ(Evaluation(), score) << "nobody is cut off from no pawns";
    LoadFEN("k7/7p/8/8/8/8/P7/7K w - -");
    EXPECT_EQ(Evaluation(), 0) << "a pawn each and nothing between them";
    LoadFEN("4k3/4p3/8/8/8/8/8/3NK3 w - -");
    const int knight = Evaluation();
    EXPECT_LE(knight, 9 + eval_info.tempo[WHITE]) << "a knight can't win";
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
