#include "eval/pawnhash.h"

#include <algorithm>

#include "core/keys.h"
#include "platform/platform.h"

namespace {

constexpr int SPARE_ENTRIES = 2;
// No pawns have this key; those of a board without pawns have key 0, which is a key like any other.
constexpr PawnEntry EMPTY_ENTRY{EMPTY_KEY, 0, 0, 0, 0, 0, 0, {}};

PawnEntry* PawnTable = nullptr;

}  // namespace

PawnEntry pawn_cache = EMPTY_ENTRY;
int PawnHashEntries = 262144;

bool AllocatePawnHash() {
    FreePawnHash();
    const size_t count = static_cast<size_t>(PawnHashEntries) + SPARE_ENTRIES;
    PawnTable = static_cast<PawnEntry*>(AllocateTable(count * sizeof(PawnEntry)));
    if (PawnTable == nullptr) return false;
    ClearPawnHash();
    return true;
}

void ClearPawnHash() {
    pawn_cache = EMPTY_ENTRY;
    if (PawnTable == nullptr) return;
    std::fill_n(PawnTable, PawnHashEntries + SPARE_ENTRIES, EMPTY_ENTRY);
}

void FreePawnHash() {
    FreeTable(PawnTable);
    PawnTable = nullptr;
}

bool HasPawnHash() {
    return PawnTable != nullptr && PawnHashEntries > 0;
}

PawnEntry& PawnHashSlot(uint64_t key) {
    return PawnTable[static_cast<uint32_t>(key) % static_cast<uint32_t>(PawnHashEntries)];
}

void PrefetchPawnHash(uint64_t key) {
    if (HasPawnHash()) __builtin_prefetch(&PawnHashSlot(key));
}
