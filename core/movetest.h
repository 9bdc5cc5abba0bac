#pragma once

#include "core/types.h"

// Questions about single moves of the side to move, answered without making them wherever possible. History
// must have room for one record.

// Whether a pseudo-legal move leaves the opponent's king attacked, by the man that moves, one that it
// uncovers or the castling rook.
bool GivesCheck(Move move);

// Whether the staged generators (captures, promotions, quiet moves) would append exactly this word. Any word
// may be asked about: killers and moves out of hash tables come from other positions, and colliding keys
// deliver nonsense.
bool IsPossible(Move move);

// Whether a pseudo-legal move of a side that is not in check leaves its king safe.
bool KeepsKingSafe(Move move);

// Whether the side to move, which is in check, has a legal move.
bool HasLegalReply();
