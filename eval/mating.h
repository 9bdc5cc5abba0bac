#pragma once

#include "eval/endingview.h"

// A bare king, and how to drive it. Scores are centipawns in favour of the strong side.

// How far the weak king has been driven to the edge and the strong king has come near.
int DriveScore(const EndingView& view);

// The strong side against a bare king: 0 when nothing can be won, UNKNOWN_ENDING when that depends.
int BareKingScore(const EndingView& view);

// Whether the strong side's men are pawns on one rook's file and bishops, if any, that don't command the
// corner before them, and the weak king has that corner or gets it. The weak side may have pawns out of their
// way.
bool IsCornerHeld(const EndingView& view);
