#pragma once

#include "core/types.h"

// Values for exchanges by piece code, in pawn units; the king's makes a king recapture the last resort.
constexpr int SeeValue[PIECE_CODES] = {0, 200, 3, 1, 0, 5, 3, 9};

// Whether the side to move's capture (fields as in the Move word) doesn't lose material. With nothing
// captured it tells whether the man is safe on `to`. An under-promotion is never safe.
bool CaptureIsSafe(int to, int from, unsigned piece, unsigned captured, unsigned promotion);

// The same for a move word.
inline bool IsSafeMove(Move move) {
    return CaptureIsSafe(MoveTo(move), MoveFrom(move), MovePiece(move), MoveCaptured(move),
                         MovePromotion(move));
}
