#include "book/bookkeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "core/board.h"
#include "core/fen.h"
#include "tests/support/positions.h"

namespace {

// The entries that are published: books made by others can be read.
TEST(BookKeysTest, TablesBeginAsPublished) {
    constexpr uint32_t FIRST[] = {0xE16CD6AE, 0xF1BBE9EB, 0x870C3E99, 0x06B747DE,
                                  0x43BB8BA6, 0x0938251F, 0x96F5453B, 0x1CDBAE32};
    constexpr uint32_t SECOND[] = {0x2923BE84, 0x529049F1, 0xB3A6DB3C, 0x245E0D1C,
                                   0xB3124DC8, 0x1F035A7D, 0x5DD4CBFC, 0x130D890A};
    EXPECT_TRUE(std::equal(std::begin(FIRST), std::end(FIRST), BookKeyTable1.begin()));
    EXPECT_TRUE(std::equal(std::begin(SECOND), std::end(SECOND), BookKeyTable2.begin()));
    EXPECT_NE(BookKeyTable1[1023], 0u);
    EXPECT_NE(BookKeyTable1[1023], BookKeyTable2[1023]);
}

TEST(BookKeysTest, KeysAreOfMenAndTurn) {
    LoadFEN(START);
    const BookKey start = CurrentBookKey();
    LoadFEN("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - -");
    EXPECT_EQ(CurrentBookKey(), start) << "rights to castle don't count";
    LoadFEN("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq -");
    EXPECT_EQ(CurrentBookKey(), (BookKey{start.Key1 ^ 0x07D3ADEB, start.Key2}));
    // White's king has code 1 and stands in slot 9, Black's in slot 1.
    LoadFEN("4k3/8/8/8/8/8/8/4K3 w - -");
    constexpr size_t WHITE_KING = 9 * 64 + 4, BLACK_KING = 64 + 60;
    EXPECT_EQ(CurrentBookKey(), (BookKey{BookKeyTable1[WHITE_KING] ^ BookKeyTable1[BLACK_KING],
                                         BookKeyTable2[WHITE_KING] ^ BookKeyTable2[BLACK_KING]}));
}

}  // namespace
