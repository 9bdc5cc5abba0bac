#include "core/boardcheck.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "core/board.h"
#include "core/material.h"
#include "tests/support/walker.h"

namespace {

using BoardCheckTest = CoreTest;

TEST_F(BoardCheckTest, SeesEveryBitThatDoesNotFollowFromTheMen) {
    static_assert(std::has_unique_object_representations_v<Board>);
    constexpr size_t FREE_WORDS[] = {offsetof(Board, SideToMove), offsetof(Board, CastlingFlags),
                                     offsetof(Board, Fifty), offsetof(Board, PieceNumber[KING]),
                                     offsetof(Board, PieceNumber[KING]) + 4};
    const auto bytes = reinterpret_cast<unsigned char*>(&board);
    VisitPositions(100 / WORK_DIVISOR, 51, [=] {
        ASSERT_TRUE(IsBoardExact());
        const uint32_t signature = board.MaterialSignature;
        for (size_t bit = 0; bit < sizeof(Board) * 8; ++bit) {
            bytes[bit / 8] ^= 1 << bit % 8;
            const Board changed = board;
            const bool isFree = std::ranges::count(FREE_WORDS, bit / 32 * 4) != 0;
            const bool losesSignature =
                signature != changed.MaterialSignature && changed.MaterialSignature == NO_SIGNATURE;
            ASSERT_EQ(IsBoardExact(), isFree || losesSignature) << "bit " << bit;
            ASSERT_TRUE(board == changed);
            bytes[bit / 8] ^= 1 << bit % 8;
        }
    });
    board.MaterialSignature = NO_SIGNATURE;
    EXPECT_TRUE(IsBoardExact());
}

}  // namespace
