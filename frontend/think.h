#pragma once

#include "core/types.h"

extern Move LastBestMove;  // the last move announced to a UCI interface, 0 for none

// Searches the position, makes the chosen move in the game and announces it in the active dialect, resigning
// if the resign rule holds; then, with PonderingOn, thinks on the predicted reply until input ends that.
// Returns with the game's result announced and no move made when the game is over.
void Think();

// Prints "bestmove" with the move and, when it is legal on the board, the expected reply.
void AnnounceBestMove(Move move);
