#include "eval/endings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "core/board.h"
#include "core/fen.h"
#include "tests/eval/evaltest.h"

namespace {

class EndingsTest : public EvalTest {
  protected:
    // The value of the position, which all its mirror images share.
    static int InAllImages(const char* fen, const std::function<int()>& evaluate) {
        LoadFEN(fen);
        const int value = evaluate();
        for (const int flip : {56, 7, 56}) {
            Reflect(flip);
            EXPECT_EQ(evaluate(), value) << fen << " reflected";
        }
        return value;
    }

    static int WhiteScore(const char* fen) {
        const int score = InAllImages(fen, Evaluation);
        LoadFEN(fen);
        return board.SideToMove == WHITE ? score : -score;
    }

    // What is left of a good score for the side to move, whatever the position's own may be.
    static int LeftOf(int score, const char* fen) {
        return InAllImages(fen, [=] {
            eval_info = EvalInfo{};
            eval_info.margin = 8 * score;
            int result = 0;
            const auto units = std::min(board.PieceMaterial[WHITE], board.PieceMaterial[BLACK]);
            EXPECT_FALSE(units < 9 && EvaluateLowMaterial(&result)) << fen;
            const int sign = board.SideToMove == BLACK ? 1 : -1,
                      left = sign * ScaleDrawishMaterial(sign * score);
            EXPECT_TRUE(left == 0 || eval_info.margin == 8 * left) << fen << " scales the margin, too";
            return left;
        });
    }
};

TEST_F(EndingsTest, KnowsWins) {
    const char* fens[] = {
        "8/8/8/4k3/8/8/8/K6R b - -",      "8/8/8/4k3/8/8/8/K4BN1 b - -",  "8/8/8/4k3/8/8/8/K4BB1 w - -",
        "8/8/8/4k3/8/8/8/KNNN4 w - -",    "8/8/8/4k3/8/8/7P/K6R w - -",   "8/8/8/8/P6k/8/8/K7 w - -",
        "4k3/8/8/8/4r3/8/8/K6Q w - -",    "4k3/8/8/4b3/8/8/8/KRN5 w - -",
        "8/8/8/8/8/8/1Kp1k3/6Q1 w - -",                                   // the king is near
        "8/8/8/8/6Q1/8/1pk5/6K1 w - -",                                   // no stalemate on the b-file
        "8/7R/8/8/2kp4/8/3K4/8 w - -",                                    // the king before the pawn
        "8/7R/8/k7/3p4/8/8/6K1 w - -",                                    // the pawn alone
        "8/8/8/3k4/P6P/8/8/K7 w - -",     "8/8/3k4/8/3PP3/8/8/K7 w - -",  // two pawns, far apart and together
        "4k3/8/8/3n4/8/8/8/K3BBN1 w - -",
    };
    for (const char* fen : fens) EXPECT_GT(WhiteScore(fen), 450) << fen;
}

TEST_F(EndingsTest, KnowsDraws) {
    const char* fens[] = {
        "8/8/8/4k3/8/8/8/K7 w - -",       "8/8/8/4k3/8/8/8/K4NN1 w - -",  "8/8/8/4k3/8/8/8/K5B1 b - -",
        "8/8/8/4k3/8/8/8/K3B1B1 w - -",  // both on dark squares
        "4k3/4P3/4K3/8/8/8/8/8 b - -",    "k7/8/8/P7/P7/P7/8/K7 w - -",
        "1k6/8/PK6/8/8/8/8/6B1 w - -",  // the bishop doesn't command a8
        "8/8/2k5/8/8/8/P6K/6B1 w - -",  // and the king gets there
        "k7/8/PK6/P7/P7/8/8/4B1B1 w - -", "k7/P7/8/2K5/8/8/8/4N3 w - -",  "7K/8/8/8/8/8/1kp5/6Q1 w - -",
        "7K/8/8/8/8/8/pk6/6Q1 w - -",     "K7/7R/8/8/8/8/3pk3/8 w - -",   "8/8/8/4k3/8/5n2/8/K6R w - -",
        "8/8/8/4k3/8/5bb1/8/K6R w - -",   "8/8/8/4k3/4r3/8/8/K5BR w - -", "8/8/8/4k3/4r3/4b3/8/K6Q w - -",
        "8/8/4k3/8/4p3/8/8/K5B1 w - -",
        "8/8/8/7p/4k2P/8/4B3/4K3 w - -",  // the pawn that blocks the way helps the king to the corner
    };
    for (const char* fen : fens) EXPECT_LE(std::abs(WhiteScore(fen)), 60) << fen;
}

// From the first position to the second White comes nearer to the mate.
TEST_F(EndingsTest, DrivesTowardsTheMate) {
    const struct {
        const char *Before, *After;
    } rows[] = {
        {"8/8/8/4k3/8/8/8/K6R w - -", "4k3/8/8/8/8/8/8/K6R w - -"},
        {"8/8/8/4k3/8/8/8/K6R w - -", "8/8/8/4k3/2K5/8/8/7R w - -"},
        {"k7/2K5/8/8/8/8/6N1/4B3 w - -", "k7/2K5/8/8/8/8/6N1/5B2 w - -"},  // the bishop commands a8
        {"8/8/8/8/8/4k3/8/KP6 w - -", "8/8/8/8/8/4k3/1P6/K7 w - -"},
        {"4k3/8/4P3/3K4/8/8/8/8 b - -", "8/4k3/4P2R/3K4/8/8/8/8 b - -"},
        {"8/5P2/8/3K4/8/k7/8/8 w - -", "5Q2/8/8/3K4/8/k7/8/8 b - -"},
    };
    for (const auto& [before, after] : rows) {
        EXPECT_GT(WhiteScore(after), WhiteScore(before)) << before << " " << after;
    }
}

// By White's advantage in a drawish position and in one that isn't, or less so.
TEST_F(EndingsTest, ScalesDrawishMaterial) {
    const struct {
        const char *Drawish, *Better;
    } rows[] = {
        // The king stands before all pawns.
        {"2k5/8/2b5/8/8/1PP5/8/2K1B3 w - -", "6k1/8/2n5/8/8/1PP5/8/2K1N3 w - -"},
        // Rook and pawn: the king before the pawn, the attacker's king away, the third rank.
        {"3k4/8/8/3PK3/8/8/r7/7R w - -", "8/8/8/k2PK3/8/8/r7/7R w - -"},
        {"3k4/8/8/3P4/5K2/8/r7/7R w - -", "3k4/8/8/3PK3/8/8/r7/7R w - -"},
        {"3k4/8/r7/3PK3/8/8/8/7R w - -", "3k4/8/8/3PK3/r7/8/8/7R w - -"},
        {"k7/8/8/P7/8/1K6/8/r6R w - -", "1K6/1P2k3/8/8/8/8/r7/2R5 w - -"},
        {"R7/P5k1/8/8/8/8/r7/6K1 w - -", "R7/P4k2/8/8/8/8/r7/6K1 w - -"},  // or from behind the buried rook
        // A minor can be had for the last pawn; bishops of one colour don't drive the king off.
        {"4k3/8/3n4/8/4P3/8/8/K4N2 w - -", "4k3/8/3n4/8/4P3/8/8/K4BN1 w - -"},
        {"4k3/8/3n4/8/4P3/8/8/K4NN1 w - -", "4k3/8/3n4/8/4P3/8/8/K4BN1 w - -"},
        {"3k4/8/8/3P4/8/4K3/4B3/6b1 w - -", "8/8/6k1/3P4/8/4K3/4B3/6b1 w - -"},
        // Two pawns against one.
        {"6k1/6p1/8/8/8/8/r4PPK/1R6 w - -", "6k1/1p6/8/8/8/8/r4PPK/1R6 w - -"},
        {"6k1/6p1/8/8/8/8/b4PPK/1N6 w - -", "6k1/1p6/8/8/8/8/b4PPK/1N6 w - -"},
        // Opposite bishops, alone and with rooks.
        {"4k1b1/pp3p2/8/8/8/8/PPP2PP1/4K1B1 w - -", "4k1b1/pp3p2/8/8/8/8/PPP2PP1/4KB2 w - -"},
        {"r3k1b1/pp3p2/8/8/8/8/PPP2PP1/R3K1B1 w - -", "r3k1b1/pp3p2/8/8/8/8/PPP2PP1/R3KB2 w - -"},
        {"4k1b1/pp3p2/8/8/8/8/PPP2PP1/4K1B1 w - -", "r3k1b1/pp3p2/8/8/8/8/PPP2PP1/R3K1B1 w - -"},
        // All on one wing, or few at all.
        {"6k1/5pp1/7p/8/8/5N2/5PPP/b5K1 w - -", "6k1/1p3pp1/7p/8/8/5N2/5PPP/b5K1 w - -"},
        {"r5k1/5pp1/7p/8/8/6P1/R4PKP/8 w - -", "r5k1/p4pp1/8/8/8/6P1/RP3PKP/8 w - -"},
        {"r5k1/5p2/p7/8/8/7P/R1P3K1/8 w - -", "r5k1/5p2/p7/8/P7/7P/R1P3K1/8 w - -"},
        // No pawns and not enough pieces.
        {"4k3/8/8/3q4/8/8/8/K2QB3 w - -", "4k3/8/8/3q4/8/8/8/K2QR3 w - -"},
    };
    constexpr int SCORE = 1 << 14;
    for (const auto& [drawish, better] : rows) {
        EXPECT_LE(2 * LeftOf(SCORE, drawish), LeftOf(SCORE, better)) << drawish;
    }
    EXPECT_EQ(LeftOf(SCORE, "1K6/1P2k3/8/8/8/8/r7/2R5 w - -"), SCORE) << "the bridge is a win";
}

TEST_F(EndingsTest, NobodyWinsWithoutMatingMaterial) {
    // White can't: a lone minor, two knights, a wrong bishop with the black king in the corner.
    for (const char* fen : {"4k3/8/8/3pp3/8/8/8/K2B4 w - -", "4k3/8/8/3r4/3n4/8/8/KNN5 w - -",
                            "k7/8/6p1/P7/8/6p1/8/K3B3 w - -"}) {
        LoadFEN(fen);
        int result = 0;
        EvaluateLowMaterial(&result);
        EXPECT_TRUE(eval_info.cannot_win[WHITE]) << fen;
        EXPECT_FALSE(eval_info.cannot_win[BLACK]) << fen;
        EXPECT_EQ(ClampNoWin(-100), 0) << fen;
        EXPECT_EQ(ClampNoWin(100), 100) << fen;
    }
}

}  // namespace
