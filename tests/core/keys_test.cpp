#include "core/keys.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "core/board.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
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

TEST_F(KeysTest, PositionKeyKnowsRightsAndEnPassant) {
    const struct {
        const char* Moves;
        uint64_t Extras;  // on top of the men
    } rows[] = {
        {"", CastleKeys[15]},
        {"e2e4", CastleKeys[15]},
        {"e2e4 a7a6 e4e5 d7d5", CastleKeys[15] ^ EnPassantKeys[3]},
        {"e2e4 a7a6 e4e5 f7f5", CastleKeys[15] ^ EnPassantKeys[5]},
        {"e2e4 a7a6 e4e5 d7d6", CastleKeys[15]},
        {"e2e4 d7d5 e4e5 f7f5 c2c3 e8f7", CastleKeys[3]},
        {"c2c4 a7a6 c4c5 a6a5 e2e4 a5a4 e4e5 d7d5", CastleKeys[15] ^ EnPassantKeys[3]},  // two pawns beside
        {"g1f3 a7a5 h2h4", CastleKeys[15]},  // none on the far edge of the next rank
        {"h2h4 a7a5", CastleKeys[15]},
        {"g1f3 g8f6 f3g1 f6g8", CastleKeys[15]},
    };
    for (const auto& row : rows) {
        ResetBoard();
        for (const std::string& move : SplitWords(row.Moves)) MakeMove(TextToMove(move.c_str()), 1);
        EXPECT_EQ(PositionKey() ^ board.HashKey, row.Extras) << row.Moves;
    }
}

// What a table is asked before a move is made is what it would be asked afterwards.
TEST_F(KeysTest, KeysAfterAMoveAreThoseOfThePositionAfterIt) {
    VisitPositions(4000, 21, [] {
        for (const Move move : LegalMoves()) {
            const uint64_t hashKey = HashKeyAfter(move), key = PositionKeyAfter(move, hashKey);
            MakeMove(move, 1);
            EXPECT_EQ(hashKey, board.HashKey) << MoveToText(move);
            EXPECT_EQ(key, PositionKey()) << MoveToText(move);
            UnmakeMove();
        }
    });
}

}  // namespace
