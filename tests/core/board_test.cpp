#include "core/board.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "core/boardcheck.h"
#include "core/makemove.h"
#include "core/material.h"
#include "core/movetext.h"
#include "tests/support/walker.h"

namespace {

using BoardTest = CoreTest;

TEST_F(BoardTest, IsExactUpToTheLastBitThatFollowsFromTheMen) {
    static_assert(std::has_unique_object_representations_v<Board>);
    constexpr size_t FREE_WORDS[] = {offsetof(Board, SideToMove), offsetof(Board, CastlingFlags),
                                     offsetof(Board, Fifty), offsetof(Board, PieceNumber[KING]),
                                     offsetof(Board, PieceNumber[KING]) + 4};
    const auto bytes = reinterpret_cast<unsigned char*>(&board);
    VisitPositions(100 / WORK_DIVISOR, 51, [=] {
        ASSERT_TRUE(IsBoardExact());
        for (size_t bit = 0; bit < sizeof(Board) * 8; ++bit) {
            const uint32_t signature = board.MaterialSignature;
            bytes[bit / 8] ^= 1 << bit % 8;
            const bool isFree = std::ranges::count(FREE_WORDS, bit / 32 * 4) != 0;
            const bool losesSignature = signature != NO_SIGNATURE && board.MaterialSignature == NO_SIGNATURE;
            ASSERT_EQ(IsBoardExact(), isFree || losesSignature) << "bit " << bit;
            bytes[bit / 8] ^= 1 << bit % 8;
        }
    });
}

TEST_F(BoardTest, LongGamesKeepTheirLastMoves) {
    static constexpr const char* SHUFFLE[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    for (int ply = 0; ply < 2001; ++ply) {
        ReserveHistory(200);
        MakeMove(TextToMove(SHUFFLE[ply % 4]), 1);
        ASSERT_EQ(GamePly(), ply + 1);
        ASSERT_EQ(HistoryForgotten % 2, 0) << "the index tells the mover";
        ASSERT_LE(HistoryLength, HISTORY_SIZE - 199);
        ASSERT_GE(HistoryLength, std::min(ply, 100) + 1) << "within reach of the fifty-move rule";
    }
    ReserveHistory(256);
    EXPECT_LE(HistoryLength, HISTORY_SIZE - 256);
    EXPECT_EQ(History[HistoryLength - 100].HashKey, board.HashKey) << "repetitions stay in sight";
    const int forgotten = HistoryForgotten;
    while (HistoryLength > 0) UnmakeMove();
    EXPECT_EQ(board.Fifty, static_cast<unsigned>(forgotten));
    EXPECT_TRUE(IsBoardExact());
}

}  // namespace
