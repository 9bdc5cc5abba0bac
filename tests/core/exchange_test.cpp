#include "core/exchange.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
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
            if (!position.HasMan(from, side, piece)) continue;
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

bool IsCastling(Move move) {
    return MovePiece(move) == KING && std::abs(MoveTo(move) - MoveFrom(move)) == 2;
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
        for (const Move move : LegalOnes(MovesOf(GenerateMoves))) {
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
    for (const DataRow& row : ReadDataRows("exchanges.txt")) {
        LoadFEN(row.Fen.c_str());
        const std::vector<std::string> safe = row.Values("safe"), unsafe = row.Values("unsafe");
        ASSERT_FALSE(safe.empty() && unsafe.empty()) << row.Fen;
        for (const std::string& text : safe) {
            EXPECT_TRUE(IsSafeMove(TextToMove(text.c_str()))) << row.Fen << ' ' << text;
        }
        for (const std::string& text : unsafe) {
            EXPECT_FALSE(IsSafeMove(TextToMove(text.c_str()))) << row.Fen << ' ' << text;
        }
    }
}

TEST_F(ExchangeTest, CountsSupportersBehindAndBeside) {
    const auto isSafe = [](const char* fen, const char* text) {
        LoadFEN(fen);
        return IsSafeMove(TextToMove(text));
    };
    // Rook takes knight, a bishop defends: only a second attacker makes it good.
    EXPECT_FALSE(isSafe("4k3/8/3n4/8/5b2/8/3R4/7K w - -", "d2d6"));
    EXPECT_TRUE(isSafe("4k3/8/3n4/8/4Nb2/8/3R4/7K w - -", "d2d6"));
    EXPECT_TRUE(isSafe("4k3/8/3n4/8/5b2/8/3R4/3R3K w - -", "d2d6"));
    // The rook in front of its queen brings the queen along, the one behind a knight does not.
    EXPECT_TRUE(isSafe("4k3/3r4/8/3p4/8/3R4/8/3QK3 w - -", "d3d5"));
    EXPECT_FALSE(isSafe("3rk3/3r4/8/3p4/8/3R4/8/3QK3 w - -", "d3d5"));
    // A king defends, unless the square is covered twice.
    EXPECT_FALSE(isSafe("4k3/3p4/8/8/8/8/3Q4/4K3 w - -", "d2d7"));
    EXPECT_TRUE(isSafe("4k3/3p4/8/1B6/8/8/3Q4/4K3 w - -", "d2d7"));
    // Their king can't take what ours defends, and the bishop behind it has to wait.
    EXPECT_TRUE(isSafe("8/5b2/4k3/3p4/3K4/2N5/8/8 w - -", "c3d5"));
    EXPECT_FALSE(isSafe("8/5b2/4k3/3p4/1K6/2N5/8/8 w - -", "c3d5"));
    // A new queen that can be taken is lost for its pawn.
    EXPECT_FALSE(isSafe("2r5/P7/8/8/8/8/8/k1K5 w - -", "a7a8q"));
    EXPECT_TRUE(isSafe("8/P7/8/8/8/8/8/k1K5 w - -", "a7a8q"));
    EXPECT_FALSE(isSafe("8/P7/8/8/8/8/8/k1K5 w - -", "a7a8n"));
}

}  // namespace
