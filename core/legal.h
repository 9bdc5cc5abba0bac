#pragma once

#include "core/types.h"

// Legality on top of the generators.

// Whether a pseudo-legal move of the side to move leaves its king safe. Makes and unmakes it; History must
// have room for one record.
bool LeavesKingSafe(Move move);

// Whether the word is a legal move of the side to move. Any word may be asked about.
bool IsLegalMove(Move move);

// Appends the pseudo-legal moves of the side to move to the move list: its evasions in check, the stages
// otherwise. Captures of a king, which only a board that no game can have offers, are left out.
void GenerateMoves();
