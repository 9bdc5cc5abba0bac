#pragma once

#include "search/extension.h"

// What the `moveCount`-th move of a node, counted from 1, is searched less deeply at first because it comes
// late and says little for itself, in sixtieths of a ply: 0..3 plies.
int LateReduction(const Node& node, const Candidate& candidate, int moveCount);
