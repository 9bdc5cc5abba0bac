#include "search/transposition.h"

#include <algorithm>

#include "core/board.h"
#include "core/keys.h"
#include "core/movescore.h"
#include "platform/platform.h"
#include "search/scores.h"

int HashEntries = 524288;
int64_t HashWrites = 0;

namespace {

constexpr int SPARE_ENTRIES = 10;
constexpr int SLOT_ENTRIES = 4;  // scanned from the start index on

HashEntry* HashTable = nullptr;

bool IsEmptyEntry(const HashEntry& entry) {
    return entry.MoveWord == 0;
}

bool BelongsTo(const HashEntry& entry, uint64_t key, int side) {
    return entry.Key == key && static_cast<int>(entry.MoveWord >> 23 & 1) == side;
}

HashEntry* FirstEntry(uint64_t key, int side) {
    const uint32_t slot = static_cast<uint32_t>(side * 4) ^ static_cast<uint32_t>(key);
    return HashTable + slot % static_cast<uint32_t>(HashEntries);
}

bool IsOfThisSearch(const HashEntry& entry) {
    return entry.Age == SearchNumber;
}

// Whether a later entry of the slot is a better one to overwrite than the candidate so far.
bool IsBetterVictim(const HashEntry& entry, const HashEntry& candidate) {
    if (IsOfThisSearch(entry) != IsOfThisSearch(candidate)) return IsOfThisSearch(candidate);
    return entry.Depth < candidate.Depth;
}

// Scores as they are stored: bounds never claim a mate, exact mates count from the node.
int StoredScore(int score, int boundType, int ply) {
    if (boundType == BOUND_LOWER) return std::min(score, MATE_BOUND);
    if (boundType == BOUND_UPPER) return std::max(score, -MATE_BOUND);
    if (score > MATE_BOUND) return score + ply;
    if (score < -MATE_BOUND) return score - ply;
    return score;
}

}  // namespace

int HashScoreAt(const HashEntry& entry, int ply) {
    if (entry.Score > MATE_BOUND) return entry.Score - ply;
    if (entry.Score < -MATE_BOUND) return entry.Score + ply;
    return entry.Score;
}

HashEntry* HashProbe() {
    return HashProbe(PositionKey(), board.SideToMove);
}

void PrefetchHash(uint64_t key, int side) {
    if (HashEntries == 0) return;
    // The first entries of the slot are those that are found most often.
    __builtin_prefetch(FirstEntry(key, side));
}

HashEntry* HashProbe(uint64_t key, int side) {
    if (HashEntries == 0) return nullptr;
    HashEntry* const first = FirstEntry(key, side);
    for (HashEntry* entry = first; entry < first + SLOT_ENTRIES; ++entry) {
        if (IsEmptyEntry(*entry)) return nullptr;
        if (!BelongsTo(*entry, key, side)) continue;
        entry->Age = SearchNumber;
        return entry;
    }
    return nullptr;
}

void HashStore(int depth, Move move, int score, int boundType, int mateThreat, int searchFlags, int ply) {
    if (HashEntries == 0) return;
    const uint64_t key = PositionKey();
    HashEntry* const first = FirstEntry(key, board.SideToMove);
    // 1. The position's own entry, an empty one, or else the best victim of the slot.
    HashEntry* victim = first;
    for (HashEntry* entry = first; entry < first + SLOT_ENTRIES; ++entry) {
        if (IsEmptyEntry(*entry)) {
            victim = entry;
            break;
        }
        if (BelongsTo(*entry, key, board.SideToMove)) {
            entry->Age = SearchNumber;
            entry->SearchFlags |= static_cast<uint16_t>(searchFlags);
            searchFlags = entry->SearchFlags;
            victim = entry;
            break;
        }
        if (entry != first && IsBetterVictim(*entry, *victim)) victim = entry;
    }
    // 2. What this search knows more deeply stays.
    if (IsEmptyEntry(*victim) || !IsOfThisSearch(*victim)) {
        ++HashWrites;
    } else if (depth < victim->Depth) {
        return;
    }
    victim->Key = key;
    victim->Depth = static_cast<int16_t>(std::clamp(depth, -32768, 32767));
    victim->Score = static_cast<int16_t>(StoredScore(score, boundType, ply));
    victim->MoveWord = move | static_cast<uint32_t>(boundType) << 21 |
                       static_cast<uint32_t>(board.SideToMove) << 23 |
                       static_cast<uint32_t>(mateThreat) << 30;
    victim->Age = SearchNumber;
    victim->SearchFlags = static_cast<uint16_t>(searchFlags);
}

int HashFull() {
    return HashEntries == 0 ? 0 : static_cast<int>(HashWrites * 1000 / HashEntries);
}

bool AllocateTransposition() {
    FreeTransposition();
    const size_t count = static_cast<size_t>(HashEntries) + SPARE_ENTRIES;
    HashTable = static_cast<HashEntry*>(AllocateTable(count * sizeof(HashEntry)));
    if (HashTable == nullptr) {
        HashEntries = 0;
        return false;
    }
    ClearHash();
    return true;
}

void FreeTransposition() {
    FreeTable(HashTable);
    HashTable = nullptr;
}

void ClearHash() {
    if (HashTable != nullptr) {
        std::fill_n(HashTable, static_cast<size_t>(HashEntries) + SPARE_ENTRIES,
                    HashEntry{EMPTY_KEY, 0, 0, 0, 0, 0});
    }
    // The stamps of the recapture statistics are search numbers.
    SearchNumber = 0;
    ClearRecaptureStatistics();
}
