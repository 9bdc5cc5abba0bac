#pragma once

#include "core/types.h"

// Move ordering: what the search learns from its cut-offs. The counters stand in core/movescore.h.

// Credits the quiet move that caused a cut-off at this ply: its history counter in set `selector` grows with
// the depth (sixtieths of a ply), and it becomes the first killer. The side to move is the mover. A depth of
// less than a ply prints "?" and leaves the counter, deliberately.
void UpdateHistory(int depth, Move move, int selector);

// Before a search: fades the counters, or clears them when the move is made in a hurry, and shifts the
// killers by the two plies that have been played since the last search.
void AgeHistory();

// Forgets the killers and the history counters: what a new game starts from.
void ClearOrdering();
void ClearKillers();
