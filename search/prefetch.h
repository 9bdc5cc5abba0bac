#pragma once

#include "core/board.h"
#include "core/keys.h"
#include "search/evalcache.h"
#include "search/transposition.h"

// Begins to fetch what the node after a pseudo-legal move will ask the tables for. Worth while before the
// move is made: that takes about as long as memory does.
inline void PrefetchNode(Move move) {
    const uint64_t key = PositionKeyAfter(move);
    PrefetchHash(key, ChangeSide(board.SideToMove));
    // The cache leaves out the en-passant file; where there is one, this fetches in vain.
    PrefetchEvaluation(key);
}
