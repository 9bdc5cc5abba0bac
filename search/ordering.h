#pragma once

#include "core/types.h"

// Move ordering: what the search learns from its cut-offs. The counters stand in core/movescore.h.

// Credits the quiet move that caused a cut-off at this ply: its history counter in set `selector` grows with
// the depth (sixtieths of a ply), and it becomes the first killer. The side to move is the mover. A depth of
// less than a ply prints "?" and leaves the counter, deliberately.
void UpdateHistory(int depth, Move move, int selector);

// Notes the best move of a node in check as the reply to try first when the same check comes again. Pawn
// captures are not worth it: they depend too much on the rest.
void RememberCheckReply(Move move);

// Counts a capture of the quiescence search for or against its like: `score` is the ordering score that it
// had, `isGood` says that it raised alpha. The side to move is the mover.
void UpdateRecapture(Move move, int score, bool isGood);

// Captures that lose nothing, by moving piece x 8 + captured piece, and all of them: how many were tried and
// how many raised alpha, since the program began. They order nothing: a debugger's or tuner's view.
struct CaptureCounts {
    uint32_t Tried[64];
    uint32_t Good[64];
    uint32_t AllTried;
    uint32_t AllGood;
};
extern CaptureCounts SafeCaptures;

// Before a search: fades the counters, or clears them when the move is made in a hurry, and shifts the
// killers by the two plies that have been played since the last search.
void AgeHistory();

// Forgets the killers and the history counters: what a new game starts from.
void ClearOrdering();
void ClearKillers();
