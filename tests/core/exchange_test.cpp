#include "core/exchange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using ExchangeTest = CoreTest;

constexpr unsigned CHEAPEST_FIRST[] = {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING};

int ValueOf(unsigned piece) {
    constexpr int VALUES[] = {0, 0, 3, 1, 0, 5, 3, 9};
    return VALUES[piece];
}

// What the side wins on the square by taking the man there with its cheapest man, going on only while it
// pays; pins are ignored, a king takes only what nobody defends, a promotion on the way counts nothing.
int BestGain(const SlowPosition& position, int side, int square, int standing) {
    for (const unsigned piece : CHEAPEST_FIRST) {
        for (int from = 0; from < 64; ++from) {
            if (position.Men[from] != SlowPosition::Man{piece, side}) continue;
            if (!(position.AttacksFrom(from, side, piece) >> square & 1)) continue;
            SlowPosition after = position;
            after.Men[square] = after.Men[from];
            after.Men[from] = {};
            if (piece == KING && after.AttackersOf(side ^ 1, square) != 0) return 0;
            return std::max(0, standing - BestGain(after, side ^ 1, square, ValueOf(piece)));
        }
    }
    return 0;
}

bool LosesNothing(Move move) {
    SlowPosition position = SlowPosition::FromBoard();
    const int us = position.SideToMove;
    int gain = ValueOf(MoveCaptured(move)), stake = ValueOf(MovePiece(move));
    if (MovePromotion(move) == QUEEN) {
        gain += 8;
        stake = 9;
    }
    position.Play(move);
    return gain >= BestGain(position, us ^ 1, MoveTo(move), stake);
}

bool IsUnderPromotion(Move move) {
    return MovePromotion(move) != EMPTY && MovePromotion(move) != QUEEN;
}

// Where both kings stand beside the square, ours may take back although theirs still defends: its value
// stands in for a rule.
bool KingsMeetAt(int square) {
    const SlowPosition position = SlowPosition::FromBoard();
    const Bitboard beside = position.AttacksFrom(square, WHITE, KING);
    return (beside >> position.KingOf(WHITE) & 1) && (beside >> position.KingOf(BLACK) & 1);
}

TEST_F(ExchangeTest, AgreesWithPlayingItOut) {
    int safe = 0, unsafe = 0, differences = 0;
    VisitPositions(20000 / WORK_DIVISOR, 3, [&] {
        for (const Move move : LegalMoves()) {
            // The search never asks about these two: nothing is captured on the arrival square of the one,
            // two men move in the other.
            if (IsEnPassant(move) || IsCastling(move)) continue;
            const bool isSafe = IsSafeMove(move);
            if (IsUnderPromotion(move)) {
                ASSERT_FALSE(isSafe) << TextOf({move});
                continue;
            }
            const bool expected = LosesNothing(move);
            if (isSafe != expected) {
                ASSERT_TRUE(KingsMeetAt(MoveTo(move))) << TextOf({move}) << " expected " << expected;
                ++differences;
            }
            (expected ? safe : unsafe) += 1;
        }
    });
    EXPECT_GT(safe, 1000);
    EXPECT_GT(unsafe, 1000);
    EXPECT_LT(differences * 1000, safe + unsafe);
    RecordProperty("moves", safe + unsafe);
    RecordProperty("differences", differences);
}

TEST_F(ExchangeTest, AgreesWithWorkedExamples) {
    int examples = 0;
    for (const DataRow& row : ReadDataRows("exchanges.txt")) {
        LoadFEN(row.Fen.c_str());
        for (const std::string key : {"safe", "unsafe"}) {
            for (const std::string& text : row.Values(key)) {
                EXPECT_EQ(IsSafeMove(TextToMove(text.c_str())), key == "safe") << row.Fen << ' ' << text;
                ++examples;
            }
        }
    }
    EXPECT_GT(examples, 400);
}

}  // namespace
