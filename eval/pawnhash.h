#pragma once

#include <cstdint>

// The pawn hash table: entries of 24 bytes, keyed by PawnHashKey. Written by the evaluation; sized by the
// settings before AllocatePawnHash.

struct PawnHashEntry {
    uint64_t Key;
    uint64_t Words[2];
};
static_assert(sizeof(PawnHashEntry) == 24);

extern int PawnHashEntries;  // 0 switches the table off

// Allocates PawnHashEntries entries (and two spare ones) in place of the old table and clears them; false,
// and no table, without the memory.
bool AllocatePawnHash();

// Marks every entry empty.
void ClearPawnHash();

void FreePawnHash();
