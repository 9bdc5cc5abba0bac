#pragma once

#include <cstdint>

// The pawn hash table and the entry in use. An entry holds what the pawns alone decide, keyed by PawnHashKey.
// Written by the pawn evaluation; sized by the settings before AllocatePawnHash.

struct PawnEntry {
    uint64_t Key;
    int16_t Opening;  // score of the pawn structure, in centipawns, Black-positive
    int16_t Ending;
    // Shelter defects of the two wings.
    uint8_t white_defects_k;
    uint8_t white_defects_q;
    uint8_t black_defects_k;
    uint8_t black_defects_q;
    uint8_t FileSets[8];  // through the following only

    // Sets of files, bit 0 = a. The order of the sides in memory differs from set to set.
    constexpr uint8_t& PassedVector(int side) { return FileSets[1 - side]; }
    constexpr uint8_t& PawnFiles(int side) { return FileSets[2 + side]; }
    constexpr uint8_t& CandidateFiles(int side) { return FileSets[4 + side]; }
    // Files of isolated or backward pawns without any pawn in front.
    constexpr uint8_t& WeakFiles(int side) { return FileSets[7 - side]; }
};
static_assert(sizeof(PawnEntry) == 24);

// The last entry that was read or computed, of whatever pawns.
extern PawnEntry pawn_cache;

extern int PawnHashEntries;  // 0 switches the table off

// Allocates PawnHashEntries entries (and two spare ones) in place of the old table and clears them and
// `pawn_cache`; false, and no table, without the memory.
bool AllocatePawnHash();

// Marks every entry and `pawn_cache` empty: due whenever a weight has changed.
void ClearPawnHash();

void FreePawnHash();

// The entry that belongs to a pawn key; only while the table is on and allocated (HasPawnHash).
PawnEntry& PawnHashSlot(uint64_t key);
bool HasPawnHash();

// Begins to fetch the entry of a pawn key, where there is a table.
void PrefetchPawnHash(uint64_t key);
