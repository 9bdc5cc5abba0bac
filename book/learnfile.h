#pragma once

#include <cstdint>

#include "core/types.h"
#include "platform/sharedfile.h"

// The learning file "Learn.kv1" in the working directory: what earlier games have taught of positions. The
// file is read and written in place, survives the end of the program at any moment, and may be shared by
// several programs at once. What it holds is not trusted.
//
//   0       23      "Kestrovan learning file", no terminator
//   23      262144  65536 places of records, 0 for none: bucket b's first one is at 23 + 4 b
//   262167  24 each records: depth value, score, move, key 1, key 2, place of the bucket's next record or 0
//
// All numbers are of 32 bits, little-endian. A position's bucket is the low 16 bits of its first key; records
// of a bucket are chained in the order in which they were added, so that places only ever grow along a chain.

// How the file knows a position: two overlapping parts of board.HashKey.
struct LearnedKey {
    uint32_t Key1 = 0, Key2 = 0;
    bool operator==(const LearnedKey&) const = default;
};

// The key of the position on the board.
LearnedKey CurrentLearnedKey();

struct LearnedRecord {
    int Depth = 0;  // sixtieths of a ply
    int Score = 0;  // centipawns, from the side to move's view
    ::Move Move = NO_MOVE;
    LearnedKey Key;
};

// Locked (FileLock) by whoever writes, from the look-up on that tells him what to write.
extern SharedFile LearningFile;

// Opens the file and makes it first if there is none. Says so when it can't or when the file is something
// else; then nothing is found and nothing written.
void OpenLearningFile();
void CloseLearningFile();

// Looks for a position. True, with its record and the record's place in bytes.
bool FindLearned(LearnedKey key, LearnedRecord* record, uint32_t* place);

// Adds a record behind all others and then links it to its chain; a damaged chain goes on with it where the
// damage begins. False when the file can't take it.
bool AddLearned(const LearnedRecord& record);

// Writes a record over the one at the place; its link stays.
bool RefreshLearned(const LearnedRecord& record, uint32_t place);
