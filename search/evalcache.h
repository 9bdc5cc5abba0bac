#pragma once

#include <cstdint>

#include "core/types.h"

// The evaluation cache: what the search wants to know of a position's evaluation, kept by the position's key
// with its castling rights. 524290 entries, addressed modulo 524288.

// The score of a side for which the position has not been evaluated yet.
constexpr int NO_EVALUATION = 32836;

#pragma pack(push, 4)
struct EvalCacheEntry {
    uint64_t Key;
    Bitboard Attacked[2];   // by side
    int32_t Score[2];       // by side to move, from its view, or NO_EVALUATION
    int32_t Optimism[2];    // by side: its king-safety bonuses
    int32_t PawnStructure;  // Black-positive
    int32_t Spare[2];
};
#pragma pack(pop)
static_assert(sizeof(EvalCacheEntry) == 52);

// The entry for the position on the board, which has a score for the side to move. Evaluates the position if
// the cache doesn't have it. Valid until the next call.
const EvalCacheEntry& CachedEvaluation();

// Begins to fetch the entry of a key as CachedEvaluation will look for it.
void PrefetchEvaluation(uint64_t key);

// Empties the cache when what its scores depend on besides the position has changed. Due before a search.
void RefreshEvalCache();

// Allocates and clears the cache, once; false without the memory.
bool AllocateEvalCache();

// Marks every entry empty.
void ClearEvalCache();

void FreeEvalCache();
