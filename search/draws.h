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

// How often the position, with its rights to castle and to capture en passant, has occurred since the last
// irreversible move, the present time included: what a claim by the rules is counted by.
int CountOccurrences();

// Whether the men that are left, kings and one minor piece at most, allow no mate at all.
bool IsMateImpossible();

// Whether either side has the pieces for a middle game: the endgame tests below don't apply then.
bool HasManyPieces();

// The draws of endings with few pieces: by material that mates nobody, and bounds for a side that can't win.
// True, with the node's score, when one of them ends a node with these bounds.
bool IsEndgameDraw(int alpha, int beta, int* score);

// Whether an ending of few pieces is so simple that quiet moves need not be looked at deeply.
bool IsSimpleEnding();

// Whether the position is a draw by repetition or by the fifty-move rule.
bool IsDraw();

// Whether it is one after a pseudo-legal move that leaves `hashKey` as the board's key.
bool IsDrawAfter(Move move, uint64_t hashKey);
