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

    static void Store(uint64_t key, int depth) {
        board.HashKey = key;
        HashStore(depth, MOVE, static_cast<int>(key), BOUND_EXACT, 0, 0, 0);
    }

    static HashEntry* Probe(uint64_t key) {
        board.HashKey = key;
        return HashProbe();
    }
};

TEST_F(TranspositionTest, KeepsWhatIsKnownOfAPositionAndSide) {
    board.HashKey = 77;
    HashStore(300, MOVE, -123, BOUND_UPPER, 1, 1, 9);
    ++SearchNumber;
    HashStore(180, MOVE, 5, BOUND_EXACT, 0, 2, 9);
    const HashEntry* entry = HashProbe();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->Depth, 300) << "the deeper one";
    EXPECT_EQ(entry->SearchFlags, 3) << "flags are merged all the same";
    EXPECT_EQ(entry->Age, SearchNumber);
    EXPECT_EQ(HashMove(*entry), MOVE);
    EXPECT_EQ(HashBound(*entry), BOUND_UPPER);
    EXPECT_EQ(HashMateThreat(*entry), 1);
    EXPECT_EQ(HashScoreAt(*entry, 3), -123);
    board.SideToMove = BLACK;
    EXPECT_EQ(HashProbe(), nullptr) << "the same men, the other side to move";
    EXPECT_EQ(Probe(78), nullptr);
}

TEST_F(TranspositionTest, ChoosesItsVictim) {
    const struct {
        int Depths[4];
        bool IsOld;  // entries 1 and 2 are of an older search
        int NewDepth, Victim;
    } rows[] = {
        {{300, 120, 240, 120}, false, 180, 1},  // the earlier one of equals
        {{300, 120, 240, 90}, false, 180, 3},
        {{300, 120, 240, 120}, false, 60, -1},  // nothing deeper gives way in the same search
        {{60, 900, 600, 30}, true, 1, 2},       // the shallower one of the old, however deep
    };
    for (const auto& row : rows) {
        Allocate(1);
        for (int key = 0; key < 4; ++key) Store(static_cast<uint64_t>(key), row.Depths[key]);
        SearchNumber += row.IsOld;
        // Used again, and so of this search.
        for (const uint64_t key : {0, 3}) Probe(key);
        Store(4, row.NewDepth);
        EXPECT_EQ(Probe(4) != nullptr, row.Victim >= 0);
        EXPECT_EQ(HashWrites, row.IsOld ? 5 : 4) << "entries of this search";
        for (int key = 0; key < 4; ++key) {
            EXPECT_EQ(Probe(static_cast<uint64_t>(key)) == nullptr, key == row.Victim) << key;
        }
    }
}

TEST_F(TranspositionTest, CountsMatesFromTheNode) {
    const struct {
        int Score, Bound, Stored, Read;
    } rows[] = {
        {MATE - 11, BOUND_EXACT, MATE - 5, MATE - 7},
        {12 - MATE, BOUND_EXACT, 6 - MATE, 8 - MATE},
        {MATE - 11, BOUND_LOWER, MATE_BOUND, MATE_BOUND},
        {-500, BOUND_LOWER, -500, -500},
    };
    for (const auto& row : rows) {
        Allocate(1);
        HashStore(60, MOVE, row.Score, row.Bound, 0, 0, 6);
        const HashEntry* entry = HashProbe();
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->Score, row.Stored) << row.Score;
        EXPECT_EQ(HashScoreAt(*entry, 2), row.Read) << row.Score;
    }
}

TEST_F(TranspositionTest, DoesNotWrapAroundItsEnd) {
    constexpr uint64_t SIZE = 8;
    Allocate(SIZE);
    Store(0, 1);
    for (uint64_t i = 1; i < 5; ++i) Store(i * SIZE - 1, 500);
    for (uint64_t i = 1; i < 5; ++i) EXPECT_NE(Probe(i * SIZE - 1), nullptr) << i;
    Store(5 * SIZE - 1, 600);
    EXPECT_NE(Probe(0), nullptr);
}

TEST_F(TranspositionTest, BearsAnySizeAndForgetsOnClear) {
    Allocate(0);
    Store(1, 100);
    EXPECT_EQ(Probe(1), nullptr);
    EXPECT_EQ(HashFull(), 0);
    Allocate(1000);
    for (uint64_t key = 0; key < 500; ++key) Store(key * 2, 60);
    EXPECT_EQ(HashFull(), 500);
    ClearHash();
    for (uint64_t key = 0; key < 500; ++key) EXPECT_EQ(Probe(key * 2), nullptr);
}

}  // namespace
