#include "book/learnscore.h"

#include <algorithm>

#include "book/learnfile.h"
#include "core/legal.h"

bool FindLearnedScore(int* depth, int* score) {
    // How far off a mate is depends on the game in which it was seen.
    constexpr int NO_MATE = 31000;
    LearnedRecord record;
    uint32_t place = 0;
    if (!FindLearned(CurrentLearnedKey(), &record, &place)) return false;
    // The key holds neither the side to move nor the rights to castle.
    if (!IsLegalMove(record.Move)) return false;
    *depth = record.Depth;
    *score = std::clamp(record.Score, -NO_MATE, NO_MATE);
    return true;
}
