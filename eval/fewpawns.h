#pragma once

#include "eval/endingview.h"

// A single piece against a single pawn. Scores are centipawns in favour of the strong side, which has the
// piece and no pawn.

int QueenAgainstPawn(const EndingView& view);
int RookAgainstPawn(const EndingView& view);

// A minor piece wins nothing: 0, or less when the pawn is too fast.
int MinorAgainstPawn(const EndingView& view);
