#include "eval/endings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "eval/evaluate.h"
#include "tests/support/walker.h"

namespace {

using EndingsTest = CoreTest;

int Evaluation() {
    int result = -32700;
    Evaluate(&result);
    return result;
}

// Puts the position with its squares changed on the board: 56 exchanges the colours, 7 left and right.
void Reflect(int flip) {
    const Board original = board;
    ClearBoard();
    for (int square = 0; square < 64; ++square) {
        if (original.PieceOn[square] == EMPTY) continue;
        const int side = (original.Occupied[WHITE] & SquareBit(square)) != 0 ? WHITE : BLACK;
        AddPiece(square ^ flip, flip == 56 ? ChangeSide(side) : side, original.PieceOn[square]);
    }
    if (flip == 56) board.SideToMove = ChangeSide(original.SideToMove);
}

// White's score of the position; the same from all its mirror images.
int WhiteScore(const char* fen) {
    LoadFEN(fen);
    const int score = Evaluation();
    const int whiteScore = board.SideToMove == WHITE ? score : -score;
    for (const int flip : {56, 7, 56}) {
        Reflect(flip);
        EXPECT_EQ(Evaluation(), score) << fen << " reflected";
    }
    return whiteScore;
}

TEST_F(EndingsTest, KnowsWins) {
    const char* fens[] = {
        "8/8/8/4k3/8/8/8/K6R w - -",    "8/8/8/4k3/8/8/8/K6R b - -",    "8/8/8/4k3/8/8/8/K4BN1 b - -",
        "8/8/8/4k3/8/8/8/K4BB1 w - -",  "8/8/8/4k3/8/8/8/KNNN4 w - -",  "8/8/8/4k3/8/8/7P/K6R w - -",
        "4k3/8/4K3/4P3/8/8/8/8 b - -",  "8/8/8/8/P6k/8/8/K7 w - -",     "4k3/8/8/8/4r3/8/8/K6Q w - -",
        "4k3/8/8/8/4n3/8/8/K6Q w - -",  "4k3/8/8/4b3/8/8/8/KRN5 w - -",
        "8/8/8/8/8/8/1Kp1k3/6Q1 w - -",  // the king is near
        "8/8/8/8/6Q1/8/1pk5/6K1 w - -",  // no stalemate on the b-file
        "8/7R/8/8/2kp4/8/3K4/8 w - -",   // the king before the pawn
        "8/7R/8/k7/3p4/8/8/6K1 w - -",   // the pawn alone
    };
    for (const char* fen : fens) EXPECT_GT(WhiteScore(fen), 450) << fen;
}

TEST_F(EndingsTest, KnowsDraws) {
    const char* fens[] = {
        "8/8/8/4k3/8/8/8/K7 w - -",       "8/8/8/4k3/8/8/8/K5N1 w - -",   "8/8/8/4k3/8/8/8/K4NN1 w - -",
        "8/8/8/4k3/8/8/8/K5B1 b - -",
        "8/8/8/4k3/8/8/8/K3B1B1 w - -",  // both on dark squares
        "8/8/8/4k1b1/8/8/8/K5N1 w - -",   "4k3/4P3/4K3/8/8/8/8/8 b - -",  "k7/8/8/P7/P7/P7/8/K7 w - -",
        "1k6/8/PK6/8/8/8/8/6B1 w - -",  // the bishop doesn't command a8
        "8/8/2k5/8/8/8/P6K/6B1 w - -",  // and the king gets there
        "k7/8/PK6/P7/P7/8/8/4B1B1 w - -", "k7/P7/8/2K5/8/8/8/4N3 w - -",  "7K/8/8/8/8/8/1kp5/6Q1 w - -",
        "7K/8/8/8/8/8/pk6/6Q1 w - -",     "K7/7R/8/8/8/8/3pk3/8 w - -",   "8/8/8/4k3/8/5n2/8/K6R w - -",
        "8/8/8/4k3/8/5bb1/8/K6R w - -",   "8/8/8/4k3/4r3/8/8/K5BR w - -", "8/8/8/4k3/4r3/4b3/8/K6Q w - -",
        "8/8/4k3/8/4p3/8/8/K5B1 w - -",
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
        {"4k3/8/8/8/4r3/8/8/K6Q w - -", "4k3/8/8/8/4Q3/8/8/K7 b - -"},
    };
    for (const auto& [before, after] : rows) {
        EXPECT_GT(WhiteScore(after), WhiteScore(before)) << before << " " << after;
    }
}

}  // namespace
