#pragma once

#include "egtb/tablevalue.h"

// Asking the tables about the position on the board.

// The value of the position, from the side to move's view. False when no table covers it: there are castling
// rights, kings only, or too many men; there is no good file of its class with that side to move; or no game
// can have it. A table that turns out to be damaged is given up, with a message.
bool ProbeTable(TableValue* value);

// The same as a score: TABLEBASE_MATE - 2n for a mate by the n-th own move, 2n - TABLEBASE_MATE for being
// mated after n own moves, 0 for a draw.
constexpr int TABLEBASE_MATE = 32700;
bool ProbeTablebase(int* score);
