#pragma once

#include <cstdint>

#include "search/scores.h"

// The full-width search below the root, and the quiescence search below that.

extern int64_t Nodes;      // of the current search
extern int MaxPlyReached;  // deepest ply of the current iteration
extern int TablebaseHits;  // of the current search

// Searches the position on the board at the current Ply, `depth` (at least one ply) deep; the caller has made
// the move and unmakes it. `nodeType` is 0 in the principal variation, elsewhere 1 and -1 by turns.
// `nullAllowed` is 0 below a null move. The result means nothing once StopRequested is set.
int Search(int alpha, int beta, int depth, int nullAllowed, int nodeType);

// Searches captures, promotions, replies to checks and, while `depth` (0 or less) is not below -120, quiet
// checks until the position is quiet.
int Quiesce(int alpha, int beta, int depth, int nodeType);
