#include "search/transposition.h"

#include <gtest/gtest.h>

#include "core/board.h"
#include "core/movescore.h"
#include "search/search.h"
#include "tests/support/walker.h"

namespace {

constexpr Move MOVE = BuildMove(12, 28, PAWN);

// A table of one start index: whatever is stored competes for the same four entries.
class TranspositionTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        Allocate(1);
    }
    void TearDown() override {
        FreeTransposition();
        HashEntries = 0;
        CoreTest::SetUp();
    }

    static void Allocate(int entries) {
        HashEntries = entries;
        ASSERT_TRUE(AllocateTransposition());
        SearchNumber = 10;
        HashWrites = 0;
        board.CastlingFlags = 0;
    }

    static void Store(uint64_t key, int depth, int flags = 0) {
        board.HashKey = key;
        HashStore(depth, MOVE, static_cast<int>(key), BOUND_EXACT, 0, flags, 0);
    }

    static HashEntry* Probe(uint64_t key) {
        board.HashKey = key;
        return HashProbe();
    }
};

TEST_F(TranspositionTest, KeepsTheFieldsOfAPositionAndSide) {
    board.HashKey = 77;
    HashStore(-5, MOVE, -123, BOUND_UPPER, 1, 2, 9);
    const HashEntry* entry = HashProbe();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->Depth, -5);
    EXPECT_EQ(HashMove(*entry), MOVE);
    EXPECT_EQ(HashBound(*entry), BOUND_UPPER);
    EXPECT_EQ(HashMateThreat(*entry), 1);
    EXPECT_EQ(entry->SearchFlags, 2);
    EXPECT_EQ(HashScoreAt(*entry, 3), -123);
    board.SideToMove = BLACK;
    EXPECT_EQ(HashProbe(), nullptr) << "the same men, the other side to move";
    EXPECT_EQ(Probe(78), nullptr);
}

TEST_F(TranspositionTest, KeepsWhatIsKnownMoreDeeply) {
    Store(1, 300, 1);
    ++SearchNumber;
    Store(1, 180, 2);
    HashEntry* entry = Probe(1);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->Depth, 300);
    EXPECT_EQ(entry->SearchFlags, 3) << "flags are merged all the same";
    EXPECT_EQ(entry->Age, SearchNumber);
    Store(1, 300);
    EXPECT_EQ(Probe(1)->SearchFlags, 3) << "and stay when it is written again";
    EXPECT_EQ(HashWrites, 1) << "the entry has been of this search since";
}

TEST_F(TranspositionTest, ReplacesTheShallowestOfThisSearch) {
    const int depths[] = {300, 120, 240, 120};
    for (int key = 0; key < 4; ++key) Store(static_cast<uint64_t>(key), depths[key]);
    EXPECT_EQ(HashWrites, 4);
    Store(4, 60);
    EXPECT_EQ(Probe(4), nullptr) << "nothing deeper gives way";
    Store(5, 180);
    EXPECT_NE(Probe(5), nullptr);
    EXPECT_EQ(Probe(1), nullptr) << "the earlier one of equals";
    EXPECT_NE(Probe(3), nullptr);
    EXPECT_EQ(HashWrites, 4) << "no new entry is in use";
}

TEST_F(TranspositionTest, PrefersToReplaceEntriesOfOlderSearches) {
    const int depths[] = {60, 900, 600, 30};
    for (int key = 0; key < 4; ++key) Store(static_cast<uint64_t>(key), depths[key]);
    ++SearchNumber;
    Probe(0);  // used again, and so of this search
    Probe(3);
    Store(4, 1);
    EXPECT_NE(Probe(4), nullptr);
    EXPECT_EQ(Probe(2), nullptr) << "the shallower one of the old, however deep";
    EXPECT_NE(Probe(0), nullptr);
    EXPECT_NE(Probe(1), nullptr);
    EXPECT_NE(Probe(3), nullptr);
    EXPECT_EQ(HashWrites, 5);
}

TEST_F(TranspositionTest, CountsMatesFromTheNode) {
    const struct {
        int Score, Bound, Ply, Stored, ReadAt, Read;
    } rows[] = {
        {MATE - 11, BOUND_EXACT, 6, MATE - 5, 2, MATE - 7},
        {12 - MATE, BOUND_EXACT, 6, 6 - MATE, 2, 8 - MATE},
        {MATE - 11, BOUND_LOWER, 6, MATE_BOUND, 2, MATE_BOUND},
        {12 - MATE, BOUND_UPPER, 6, -MATE_BOUND, 2, -MATE_BOUND},
        {MATE_BOUND, BOUND_EXACT, 6, MATE_BOUND, 2, MATE_BOUND},
        {-500, BOUND_LOWER, 6, -500, 2, -500},
    };
    for (const auto& row : rows) {
        Allocate(1);
        HashStore(60, MOVE, row.Score, row.Bound, 0, 0, row.Ply);
        const HashEntry* entry = HashProbe();
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->Score, row.Stored) << row.Score;
        EXPECT_EQ(HashScoreAt(*entry, row.ReadAt), row.Read) << row.Score;
    }
}

TEST_F(TranspositionTest, DoesNotWrapAroundItsEnd) {
    constexpr int SIZE = 8;
    Allocate(SIZE);
    Store(0, 1);
    for (uint64_t i = 0; i < 4; ++i) Store(SIZE - 1 + i * SIZE, 500);
    for (uint64_t i = 0; i < 4; ++i) EXPECT_NE(Probe(SIZE - 1 + i * SIZE), nullptr) << i;
    EXPECT_NE(Probe(0), nullptr);
    Store(SIZE - 1 + 4 * SIZE, 600);
    EXPECT_NE(Probe(0), nullptr);
}

TEST_F(TranspositionTest, DoesWithoutEntries) {
    Allocate(0);
    Store(1, 100);
    EXPECT_EQ(Probe(1), nullptr);
    EXPECT_EQ(HashFull(), 0);
}

TEST_F(TranspositionTest, ForgetsOnClear) {
    Allocate(1000);
    for (uint64_t key = 0; key < 500; ++key) Store(key * 2, 60);
    EXPECT_EQ(HashFull(), 500);
    ClearHash();
    for (uint64_t key = 0; key < 500; ++key) EXPECT_EQ(Probe(key * 2), nullptr);
    EXPECT_EQ(SearchNumber, 0);
}

}  // namespace
