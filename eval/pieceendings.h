#pragma once

#include "eval/endingview.h"

// Piece against piece, without pawns.

// The strong side's score, in centipawns, when neither side has pawns and the weak side has pieces. Lets no
// side win that can't.
int PieceEndingScore(const EndingView& view);

// What is left, out of 256, of an advantage in pieces that doesn't win without pawns: by the kind of pieces.
int PieceEndingFactor(const EndingView& view);
