#pragma once

#include "egtb/tablevalue.h"

// Tables of a king with a queen, rook or pawn against a king, solved from the rules alone. Other men are not
// covered.

// Solves them, once in a process; leaves the initial position on the board.
void SolveSmallTables();

// The value of the position on the board; TABLE_BROKEN when it isn't covered.
TableValue SmallTableValue();

// The same as the search asks for it, to be set as TablebaseProber.
bool ProbeSmallTables(int* score);
