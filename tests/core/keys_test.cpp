#include "core/keys.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using KeysTest = CoreTest;

// The generator of the keys as the standard library has it.
class KeySource {
  public:
    uint64_t Next() {
        uint64_t key = 0;
        for (uint64_t bit = 1; bit != 0; bit <<= 1) {
            if (engine_() >> 16 & 1) key |= bit;
        }
        return key;
    }

  private:
    std::linear_congruential_engine<uint32_t, 214013, 2531011, 0> engine_{1};
};

TEST_F(KeysTest, ComeFromTheGeneratorInTheFixedOrder) {
    KeySource source;
    std::set<uint64_t> all;
    const auto expectNext = [&](uint64_t key) {
        EXPECT_EQ(key, source.Next());
        all.insert(key);
    };
    for (int square = 0; square < 64; ++square) {
        for (const unsigned piece : {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
            expectNext(PieceKeys[WHITE][piece][square]);
            expectNext(PieceKeys[BLACK][piece][square]);
        }
        EXPECT_EQ(PieceKeys[WHITE][EMPTY][square] | PieceKeys[BLACK][4][square], 0u);
    }
    for (const uint64_t key : CastleKeys) expectNext(key);
    for (const uint64_t key : EnPassantKeys) expectNext(key);
    EXPECT_EQ(all.size(), 64u * 12 + 16 + 8);
    const uint64_t first = PieceKeys[WHITE][PAWN][0];
    InitHashKeys();
    EXPECT_EQ(PieceKeys[WHITE][PAWN][0], first);
}

// What the position key has on top of the men after the moves.
uint64_t ExtrasAfter(std::initializer_list<const char*> moves) {
    ResetBoard();
    for (const char* move : moves) MakeMove(TextToMove(move), 1);
    return PositionKey() ^ board.HashKey;
}

TEST_F(KeysTest, PositionKeyKnowsRightsAndEnPassant) {
    EXPECT_EQ(ExtrasAfter({}), CastleKeys[15]);
    EXPECT_EQ(ExtrasAfter({"e2e4"}), CastleKeys[15]) << "no pawn beside";
    EXPECT_EQ(ExtrasAfter({"e2e4", "a7a6", "e4e5", "d7d5"}), CastleKeys[15] ^ EnPassantKeys[3]);
    EXPECT_EQ(ExtrasAfter({"e2e4", "a7a6", "e4e5", "f7f5"}), CastleKeys[15] ^ EnPassantKeys[5]);
    EXPECT_EQ(ExtrasAfter({"e2e4", "a7a6", "e4e5", "d7d6"}), CastleKeys[15]);
    // A pawn on the far edge of the next rank is no neighbour.
    EXPECT_EQ(ExtrasAfter({"h2h4", "a7a5"}), CastleKeys[15]);
    EXPECT_EQ(ExtrasAfter({"g1f3", "a7a5", "h2h4"}), CastleKeys[15]);
    EXPECT_EQ(ExtrasAfter({"e2e4", "e7e5", "e1e2"}), CastleKeys[12]);
    // Two pawns beside are one en-passant file.
    LoadFEN(EN_PASSANT_BOTH_SIDES);
    EXPECT_EQ(PositionKey(), board.HashKey ^ CastleKeys[0] ^ EnPassantKeys[3]);
    // The way there does not matter.
    ResetBoard();
    const uint64_t key = PositionKey();
    ExtrasAfter({"g1f3", "g8f6", "f3g1", "f6g8"});
    EXPECT_EQ(PositionKey(), key);
}

}  // namespace
