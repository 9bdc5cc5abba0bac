#pragma once

#include "core/types.h"

// Draws by the rules that need the history of the game.

// The score of a draw for the engine's own side, in centipawns; the other side gets it negated.
extern int DrawScore;

// DrawScore from the side to move's view.
int DrawScoreToMove();

// Whether the position has occurred before, with the same side to move and nothing irreversible since. One
// earlier occurrence suffices; a null move counts as irreversible.
bool IsRepetition();

// Whether the position is a draw by repetition or by the fifty-move rule.
bool IsDraw();
