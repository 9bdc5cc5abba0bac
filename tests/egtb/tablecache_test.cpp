#include "egtb/tablecache.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <random>
#include <vector>

#include "tests/egtb/tabletest.h"

namespace {

constexpr const char* NAMES[] = {"kqk", "krk", "kbk"};

class TableCacheTest : public TableTest {
  protected:
    void SetUp() override {
        TableTest::SetUp();
        for (const char* name : NAMES) WriteTables(name);
        EXPECT_EQ(Register(), "");
    }

    static TableValue ValueAt(const TableFile& file, int64_t index) {
        const uint8_t* entry = FindTableEntry(file, index);
        return entry == nullptr ? TABLE_BROKEN : ValueOfCode(static_cast<int8_t>(*entry), 1);
    }

    // Reads entries at random, and all those of one file in order, and expects what was written.
    static void ExpectEntries() {
        std::mt19937_64 random(3);
        for (int i = 0; i < 20000; ++i) {
            const char* name = NAMES[random() % 3];
            const int side = static_cast<int>(random() % 2);
            const TableFile& file = *Registered(name, side);
            const auto index = static_cast<int64_t>(random() % static_cast<uint64_t>(file.Bytes()));
            ASSERT_EQ(ValueAt(file, index), MadeUpValue(name, side, index)) << name << side << index;
        }
        const TableFile& file = *Registered("krk", WHITE);
        for (int64_t i = 0; i < file.Bytes(); ++i) {
            ASSERT_EQ(ValueAt(file, i), MadeUpValue("krk", WHITE, i)) << i;
        }
    }
};

// The six files have 22 blocks.
TEST_F(TableCacheTest, SizesChangeNoValue) {
    const struct {
        int Bytes, Blocks;
    } rows[] = {{-1, 0}, {0, 0}, {51, 0}, {52, 1}, {8192, 1}, {3 * 8300, 3}, {9 * 8300, 9}, {1 << 20, 127}};
    for (const auto& [bytes, blocks] : rows) {
        EGTBHashSize = bytes;
        AllocateTablebaseCache();
        EXPECT_EQ(CachedBlockLimit(), blocks) << bytes;
        ExpectEntries();
    }
    // Blocks of files that have been closed are served for no other.
    const std::string other = PathOf("kqk.nbw");
    WriteTable(other, "krk", WHITE);
    std::filesystem::resize_file(other, static_cast<uintmax_t>(TableFileBytes("kqk", WHITE)));
    EXPECT_EQ(Register(), "");
    for (const int64_t i : {0, 9000, 17000, 25000}) {
        EXPECT_EQ(ValueAt(*Registered("kqk", WHITE), i), MadeUpValue("krk", WHITE, i));
    }
}

TEST_F(TableCacheTest, ThereIsNoneWithoutTables) {
    EXPECT_EQ(CachedBlockLimit(), 0);
    AllocateTablebaseCache();
    EXPECT_GT(CachedBlockLimit(), 0);
    Register(PathOf("missing"));
    AllocateTablebaseCache();
    EXPECT_EQ(CachedBlockLimit(), 0);
}

// What has been read stays, though the file gets shorter beneath it; the rest is not made up.
TEST_F(TableCacheTest, FilesThatShrinkAreNoticed) {
    for (const int bytes : {51, 52, 1 << 20}) {
        EGTBHashSize = bytes;
        WriteTable(PathOf("kqk.nbw"), "kqk", WHITE);
        EXPECT_EQ(Register(), "");
        AllocateTablebaseCache();
        const TableFile& file = *Registered("kqk", WHITE);
        EXPECT_EQ(ValueAt(file, 20000), MadeUpValue("kqk", WHITE, 20000));
        std::filesystem::resize_file(PathOf("kqk.nbw"), 10000);
        for (int i = 0; i < 2; ++i) EXPECT_EQ(FindTableEntry(file, 12000), nullptr);
        EXPECT_EQ(ValueAt(file, 5000), MadeUpValue("kqk", WHITE, 5000));
    }
}

#ifndef KESTROVAN_SANITIZED
TEST_F(TableCacheTest, WithoutMemoryNothingIsProbed) {
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &limit), 0);
    rlimit low = limit;
    low.rlim_cur = rlim_t{1} << 29;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &low), 0);
    EGTBHashSize = 1 << 30;
    AllocateTablebaseCache();
    setrlimit(RLIMIT_AS, &limit);
    EXPECT_EQ(Take(), "An error occured while memory allocation!\n");
    EXPECT_EQ(FoundPieces, 0);
    // A size that can be had brings the tables back.
    EGTBHashSize = 1 << 20;
    AllocateTablebaseCache();
    EXPECT_EQ(FoundPieces, 3);
    ExpectEntries();
}
#endif

}  // namespace
