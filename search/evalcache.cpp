#include "search/evalcache.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "core/keys.h"

namespace {

constexpr size_t ENTRY_BYTES = 52;
constexpr size_t ENTRIES = 524290;

char* EvalCache = nullptr;

}  // namespace

bool AllocateEvalCache() {
    FreeEvalCache();
    EvalCache = static_cast<char*>(std::calloc(ENTRIES, ENTRY_BYTES));
    if (EvalCache == nullptr) return false;
    ClearEvalCache();
    return true;
}

void ClearEvalCache() {
    if (EvalCache == nullptr) return;
    // The key leads each entry.
    for (size_t i = 0; i < ENTRIES; ++i)
        std::memcpy(EvalCache + i * ENTRY_BYTES, &EMPTY_KEY, sizeof EMPTY_KEY);
}

void FreeEvalCache() {
    std::free(EvalCache);
    EvalCache = nullptr;
}
