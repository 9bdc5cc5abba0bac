#include "egtb/tableposition.h"

#include <gtest/gtest.h>

#include "egtb/tablevalue.h"

namespace {

TEST(TableValueTest, BetterIsWhatThePlayerWouldTake) {
    const TableValue order[] = {MateIn(1),    MateIn(2),  MateIn(100), TABLE_DRAW,
                                MatedIn(100), MatedIn(1), MatedIn(0)};
    for (int i = 0; i < 7; ++i) {
        for (int j = 0; j < 7; ++j) EXPECT_EQ(IsBetter(order[i], order[j]), i < j) << i << j;
    }
    EXPECT_EQ(BeforeMove(MatedIn(0)), MateIn(1));
    EXPECT_EQ(BeforeMove(MateIn(1)), MatedIn(1));
    EXPECT_EQ(BeforeMove(TABLE_DRAW), TABLE_DRAW);
}

TEST(TableValueTest, CodesAreReadAsTheyAreWritten) {
    for (const int bytes : {1, 2}) {
        const int longest = LongestMate(bytes);
        for (int moves = 0; moves < longest; ++moves) {
            EXPECT_EQ(ValueOfCode(CodeOfValue(MatedIn(moves), bytes), bytes), MatedIn(moves));
            EXPECT_EQ(ValueOfCode(CodeOfValue(MateIn(moves + 1), bytes), bytes), MateIn(moves + 1));
        }
        EXPECT_EQ(ValueOfCode(CodeOfValue(TABLE_BROKEN, bytes), bytes), TABLE_BROKEN);
    }
    EXPECT_EQ(CodeOfValue(MateIn(1), 1), 126);
    EXPECT_EQ(CodeOfValue(MatedIn(0), 1), -126);
    EXPECT_EQ(ValueOfCode(0, 1), TABLE_DRAW);
    EXPECT_EQ(ValueOfCode(-128, 1), TABLE_BROKEN);
}

TEST(TablePositionTest, TellsWhatNoGameCanHave) {
    TablePosition position;
    position.Men[WHITE][KING] = SquareBit(MakeSquare(3, 3));
    position.Men[BLACK][KING] = SquareBit(MakeSquare(3, 5));
    position.Men[WHITE][PAWN] = SquareBit(MakeSquare(6, 4));
    position.Men[BLACK][PAWN] = SquareBit(MakeSquare(7, 4));
    EXPECT_TRUE(IsPlayable(position));
    position.DoubleStep = MakeSquare(7, 4);
    EXPECT_TRUE(IsPlayable(position));
    EXPECT_EQ(EnPassantCapturers(position), SquareBit(MakeSquare(6, 4)));
    // From Black's side it is the same.
    const TablePosition changed = ChangeSides(position);
    EXPECT_TRUE(IsPlayable(changed));
    EXPECT_EQ(EnPassantCapturers(changed), SquareBit(MakeSquare(6, 3)));
    // A double step passes over nobody.
    TablePosition blocked = position;
    blocked.Men[WHITE][KNIGHT] = SquareBit(MakeSquare(7, 5));
    EXPECT_FALSE(IsPlayable(blocked));
    // The side that has moved is not in check, however far the checker stands.
    TablePosition checked = position;
    checked.Men[WHITE][BISHOP] = SquareBit(MakeSquare(0, 2));
    EXPECT_FALSE(IsPlayable(checked));
    checked.SideToMove = BLACK;
    checked.DoubleStep = -1;
    EXPECT_TRUE(IsPlayable(checked));
    checked.Men[BLACK][KNIGHT] = SquareBit(MakeSquare(0, 2));
    EXPECT_FALSE(IsPlayable(checked));
}

}  // namespace
