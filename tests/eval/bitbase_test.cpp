#include "eval/bitbase.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "core/types.h"

namespace {

bool IsLegal(int turn, int white, int black, int pawn) {
    const auto ranks = [=](int square) { return square / 8 - black / 8; };
    const auto files = [=](int square) { return std::abs(square % 8 - black % 8); };
    const bool areKingsNear = std::abs(ranks(white)) <= 1 && files(white) <= 1;
    const bool isBlackInCheck = ranks(pawn) == -1 && files(pawn) == 1;
    return !areKingsNear && white != pawn && black != pawn && (turn == BLACK || !isBlackInCheck);
}

// The wins of king and pawn against king have been counted often; pawns on the files a to d stand for all.
TEST(BitbaseTest, HasTheKnownNumberOfWinsForEitherColour) {
    int wins[2]{}, others = 0;
    for (int index = 0; index < 2 * 64 * 64 * 64; ++index) {
        const int turn = index >> 18, white = index >> 12 & 63, black = index >> 6 & 63, pawn = index & 63;
        if (pawn < 8 || pawn > 55 || !IsLegal(turn, white, black, pawn)) continue;
        const bool isWon = IsPawnEndingWon(WHITE, white, black, pawn, turn);
        wins[pawn % 8 / 4] += isWon;
        others += IsPawnEndingWon(BLACK, white ^ 56, black ^ 56, pawn ^ 56, ChangeSide(turn)) != isWon;
    }
    EXPECT_EQ(wins[0], 111'282);
    EXPECT_EQ(wins[1], 111'282);
    EXPECT_EQ(others, 0);
}

}  // namespace
