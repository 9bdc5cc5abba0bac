#include "egtb/tableindex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/support/datafile.h"

namespace {

// A row of tests/data/egtb/ranges.txt, both sides.
struct RangeRow {
    std::string Name;
    int64_t Size[2], EnPassant[2], Cut[2];
};

std::vector<RangeRow> ReadRanges() {
    std::vector<RangeRow> rows;
    for (const std::string& line : ReadDataLines("egtb/ranges.txt")) {
        if (line[0] == '#') continue;
        const std::vector<std::string> words = SplitWords(line);
        const auto number = [&](int i) { return std::stoll(words.at(i)); };
        rows.push_back({words[0], {number(2), number(4)}, {number(6), number(7)}, {number(9), number(10)}});
    }
    return rows;
}

TEST(TableIndexTest, ClassesHaveThePublishedRanges) {
    int number = 0;
    for (const RangeRow& row : ReadRanges()) {
        ASSERT_EQ(FindTableClass(row.Name.c_str()), ++number) << row.Name;
        const TableClass& tableClass = TableClasses[number];
        EXPECT_STREQ(tableClass.Name, row.Name.c_str());
        for (const int side : {WHITE, BLACK}) {
            const TableIndex index(tableClass, side);
            EXPECT_EQ(index.Size(), row.Size[side]) << row.Name << side;
            EXPECT_EQ(index.Size() - index.OrdinarySize(), row.EnPassant[side]) << row.Name << side;
            // For classes that know of en passant only the whole range is published.
            if (tableClass.HasEnPassant()) continue;
            EXPECT_EQ(index.Size() - index.FileEntries(), row.Cut[side]) << row.Name << side;
        }
    }
    EXPECT_EQ(number, LAST_CLASS_OF_5);
}

TEST(TableIndexTest, ClassesAreFoundByMenFromBothSides) {
    for (int number = 1; number <= TABLE_CLASSES; ++number) {
        const TableClass& tableClass = TableClasses[number];
        const MenCode strong = tableClass.Code[WHITE], weak = tableClass.Code[BLACK];
        EXPECT_EQ(FindTableClass(tableClass.Name), number);
        EXPECT_EQ(FindTableClass(strong, weak), number);
        EXPECT_EQ(FindTableClass(weak, strong), strong == weak ? number : -number);
    }
    EXPECT_EQ(FindTableClass(0, 0), 0);
    EXPECT_EQ(FindTableClass(4 * OneMan(PAWN), 0), 0);
    EXPECT_EQ(FindTableClass(3 * OneMan(QUEEN), 2 * OneMan(ROOK)), 0);
    EXPECT_EQ(FindTableClass("kk"), 0);
}

// Every entry that is not broken leads to its own number again, and the second numbers of a position to the
// first.
int64_t CountPositions(const char* name, int side, int64_t step) {
    const TableIndex index(TableClasses[FindTableClass(name)], side);
    int64_t positions = 0;
    for (int64_t i = 0; i < index.Size(); i += step) {
        TablePosition position;
        if (!index.PositionAt(i, &position)) continue;
        const int64_t number = index.IndexOf(position);
        if (number == i) {
            ++positions;
            continue;
        }
        TablePosition same;
        EXPECT_TRUE(number >= 0 && number < i) << name << " " << i << " " << number;
        EXPECT_TRUE(index.PositionAt(number, &same));
        EXPECT_EQ(MenOf(same, WHITE), MenOf(position, WHITE));
        EXPECT_EQ(index.IndexOf(same), number);
    }
    return positions;
}

TEST(TableIndexTest, NumbersAreOneToOne) {
    for (const int side : {WHITE, BLACK}) {
        for (const char* name : {"kqk", "kpk"}) EXPECT_GT(CountPositions(name, side, 1), 0);
        for (const char* name : {"kbnk", "krkn", "kppk", "kpkp", "kqkp"}) {
            EXPECT_GT(CountPositions(name, side, 7), 0);
        }
        for (const char* name : {"kbbkn", "kppkp", "krppkp", "kppkpp", "kqqqkn"}) {
            EXPECT_GT(CountPositions(name, side, 1000003), 0);
        }
    }
}

TablePosition Mirrored(const TablePosition& position, Bitboard (*mirror)(Bitboard), int step) {
    TablePosition result = position;
    for (const int side : {WHITE, BLACK}) {
        for (Bitboard& men : result.Men[side]) men = mirror(men);
    }
    if (position.DoubleStep >= 0) result.DoubleStep = step;
    return result;
}

TEST(TableIndexTest, MirrorImagesHaveOneNumber) {
    std::mt19937_64 random(5);
    for (const char* name : {"krkn", "kbbk", "kppkp", "kpkp", "kqqkr"}) {
        const TableClass& tableClass = TableClasses[FindTableClass(name)];
        const TableIndex index(tableClass, WHITE);
        for (int i = 0; i < 20000; ++i) {
            TablePosition position;
            const int64_t number = static_cast<int64_t>(random() % static_cast<uint64_t>(index.Size()));
            if (!index.PositionAt(number, &position)) continue;
            const int64_t expected = index.IndexOf(position);
            const TablePosition other = Mirrored(position, FlipFiles, position.DoubleStep ^ 7);
            EXPECT_EQ(index.IndexOf(other), expected);
            if (tableClass.HasPawns()) continue;
            for (const TablePosition& image : {position, other}) {
                const TablePosition turned = Mirrored(image, FlipRanks, -1);
                EXPECT_EQ(index.IndexOf(turned), expected);
                EXPECT_EQ(index.IndexOf(Mirrored(image, FlipDiagonal, -1)), expected);
                EXPECT_EQ(index.IndexOf(Mirrored(turned, FlipDiagonal, -1)), expected);
            }
        }
    }
}

}  // namespace
