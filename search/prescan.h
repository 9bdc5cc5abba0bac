#pragma once

#include "core/types.h"
#include "search/node.h"
#include "search/picker.h"

// Looks one move ahead for something that ends a node without searching: a draw that the side to move can
// have, a mate in one, a reply that the table knows to be bad enough for the opponent. True, with the move
// and the node's score, when there is such a move.
bool PreScan(const Node& node, MovePicker& picker, Move* move, int* score);
