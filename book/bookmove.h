#pragma once

#include "core/types.h"

// The legal move of the position on the board between two squares, with a queen for a pawn on the last rank;
// 0 when there is none. Books name moves by their squares; any numbers may be asked about.
Move LegalBookMove(int from, int to);
