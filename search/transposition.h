#pragma once

#include <cstdint>

#include "core/types.h"

// The transposition table. Positions are found by PositionKey and the side to move, which is not part of the
// key but of the slot and the entry.

enum BoundType : int { BOUND_NONE = 0, BOUND_UPPER = 1, BOUND_LOWER = 2, BOUND_EXACT = 3 };

#pragma pack(push, 4)
struct HashEntry {
    uint64_t Key;
    int16_t Depth;      // sixtieths of a ply; 0 from the quiescence search
    int16_t Score;      // mate scores count from this node, not from the root
    uint32_t MoveWord;  // bits 0-20 move, 21-22 bound type, 23 side to move, 30 mate threat; 0 when empty
    uint16_t Age;       // SearchNumber of the search that last wrote or hit it
    uint16_t SearchFlags;
};
#pragma pack(pop)
static_assert(sizeof(HashEntry) == 20);

inline Move HashMove(const HashEntry& entry) {
    return entry.MoveWord & 0x1FFFFF;
}
inline int HashBound(const HashEntry& entry) {
    return entry.MoveWord >> 21 & 3;
}
inline int HashMateThreat(const HashEntry& entry) {
    return entry.MoveWord >> 30 & 1;
}

// An exact score of an entry as seen from a node at `ply`: mate scores are turned to distances from the root.
int HashScoreAt(const HashEntry& entry, int ply);

extern int HashEntries;     // entries wanted; 0 for no table. Set before AllocateTransposition.
extern int64_t HashWrites;  // stores of this search that took an empty or aged entry

// The entry of the position on the board, or null. A hit is marked as used by the current search.
HashEntry* HashProbe();

// The same for a position that is not on the board: its PositionKey, and the side to move there.
HashEntry* HashProbe(uint64_t key, int side);

// Begins to fetch what HashProbe(key, side) will read.
void PrefetchHash(uint64_t key, int side);

// Stores a result for the position on the board, `ply` plies from the root (mate scores are adjusted by it).
// An entry of the same position that is deeper keeps all but its age and flags.
void HashStore(int depth, Move move, int score, int boundType, int mateThreat, int searchFlags, int ply);

// How full the table is with this search's entries, per mille.
int HashFull();

// Allocates HashEntries entries (and a few spare ones: a probe doesn't wrap around the end) in place of the
// old table and clears them; false, and no table, without the memory.
bool AllocateTransposition();
void FreeTransposition();

// Empties the table and starts counting searches anew.
void ClearHash();
