#pragma once

#include <cstdint>

#include "egtb/tablefile.h"

// The blocks of table files that were read last, so that most probes read no file.

// Below this size, in bytes, no cache is made and every entry is read from its file.
constexpr int SMALLEST_TABLEBASE_CACHE = 52;

// Makes a cache of EGTBHashSize bytes, of one block at least, in place of the one that there is; none while
// no tables are registered. If the memory can't be had it says so and sets FoundPieces to 0, so that nothing
// is probed.
void AllocateTablebaseCache();
void FreeTablebaseCache();

// How many blocks the cache can hold; 0 without one.
int CachedBlockLimit();

// The bytes of an entry that begins at the place, which must be below the length of the file. Valid until the
// next call; null when the file can't be read.
const uint8_t* FindTableEntry(const TableFile& file, int64_t place);
