#pragma once

#include "core/types.h"
#include "search/nodeeval.h"

// Moves that can't bring a position back to alpha.

// What a move is expected to gain at once, in centipawns: what it takes, what it promotes to, and what its
// man's new square is better than the old one; less the man itself when that is lost.
int EstimateGain(Move move, bool isLost);

// Whether a move of that gain, which gives no check, is futile: the position, not in check, is too far below
// alpha.
bool IsFutile(int gain, int alpha, const NodeEvaluation& evaluation);
