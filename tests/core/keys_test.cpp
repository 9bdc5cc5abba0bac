#include "core/keys.h"

#include "core/board.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/walker.h"

namespace {

using KeysTest = CoreTest;

TEST_F(KeysTest, PositionKeyKnowsRightsAndEnPassant) {
    const struct {
        const char* Moves;
        uint64_t Extras;  // on top of the men
    } rows[] = {
        {"e2e4", CastleKeys[15]},
        {"e2e4 a7a6 e4e5 d7d5", CastleKeys[15] ^ EnPassantKeys[3]},
        {"e2e4 d7d5 e4e5 f7f5 c2c3 e8f7", CastleKeys[3]},
        {"c2c4 a7a6 c4c5 a6a5 e2e4 a5a4 e4e5 d7d5", CastleKeys[15] ^ EnPassantKeys[3]},  // two pawns beside
        {"g1f3 a7a5 h2h4", CastleKeys[15]},  // none on the far edge of the next rank
        {"h2h4 a7a5", CastleKeys[15]},
    };
    for (const auto& row : rows) {
        ResetBoard();
        for (const std::string& move : SplitWords(row.Moves)) MakeMove(TextToMove(move.c_str()), 1);
        EXPECT_EQ(PositionKey() ^ board.HashKey, row.Extras) << row.Moves;
    }
}

// What a table is asked before a move is made is what it would be asked afterwards.
TEST_F(KeysTest, KeysAfterAMoveAreThoseOfThePositionAfterIt) {
    VisitPositions(4000 / WORK_DIVISOR, 21, [] {
        for (const Move move : LegalMoves()) {
            const uint64_t hashKey = HashKeyAfter(move), key = PositionKeyAfter(move);
            MakeMove(move, 1);
            EXPECT_EQ(hashKey, board.HashKey) << MoveToText(move);
            EXPECT_EQ(key, PositionKey()) << MoveToText(move);
            UnmakeMove();
        }
    });
}

}  // namespace
