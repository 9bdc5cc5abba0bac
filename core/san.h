#pragma once

#include "core/types.h"

// Moves in standard algebraic notation, as games are written down, both ways.

enum SanResult { SAN_FOUND, SAN_AMBIGUOUS, SAN_UNKNOWN };

// Finds the legal move of the position that the text names; `move` is written only if there is exactly one.
// Also understood: coordinates with or without the piece's letter (e2e4, Ng1-f3), P for a pawn, `:` and `-`
// for `x` or nothing, noughts or small letters in castling, promotions as e8=Q, e8Q, e8(Q) and e8/Q, and any
// signs of check, en passant or assessment at the end. A mark of check or of a piece's capture that is wrong
// is deliberately overlooked. The board must have no position fault, History room for one record.
SanResult ResolveSan(const char* text, Move* move);

// The shortest text that names a legal move, with a sign of check or mate; -- for no move. It stands in a
// buffer that the next call overwrites. History must have room for two records.
const char* MoveToSan(Move move);
