#include "eval/pawnhash.h"

#include <algorithm>
#include <cstdlib>

#include "core/keys.h"

int PawnHashEntries = 262144;

namespace {

constexpr int SPARE_ENTRIES = 2;

PawnHashEntry* PawnTable = nullptr;

}  // namespace

bool AllocatePawnHash() {
    FreePawnHash();
    const size_t count = static_cast<size_t>(PawnHashEntries) + SPARE_ENTRIES;
    PawnTable = static_cast<PawnHashEntry*>(std::malloc(count * sizeof(PawnHashEntry)));
    if (PawnTable == nullptr) return false;
    ClearPawnHash();
    return true;
}

void ClearPawnHash() {
    if (PawnTable == nullptr) return;
    std::fill_n(PawnTable, PawnHashEntries + SPARE_ENTRIES, PawnHashEntry{EMPTY_KEY, {0, 0}});
}

void FreePawnHash() {
    std::free(PawnTable);
    PawnTable = nullptr;
}
