#pragma once

#include "core/types.h"

// Choosing among the moves that the book has for the position on the board.

// A book move, or 0 when the book has none that may be played: none at all, only removed ones, or only such
// as are not legal in the position (other positions may share its key, and files may be damaged). Pawns
// promote to queens. By BookLearningMode: kill plays what has scored well (within VarietyOfPlay, and only
// with UseBookWeights), discover what has been played least.
Move ChooseBookMove();

// Prints the book moves of the position, with the two words of its key: the reply to "bkm".
void ListBookMoves();
