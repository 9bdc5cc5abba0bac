#pragma once

#include "search/node.h"

// What is known of a position from outside of the search: endgame tablebases and positions learnt from
// earlier games. Whoever has such knowledge sets the procedures; null while there is none.

// The value of the position on the board: from the side to move's view, 32700 - 2n for a mate by its n-th own
// move and 2n - 32700 for being mated after n own moves, 0 for a draw. False when no table covers it.
extern bool (*TablebaseProber)(int* score);

// Whether tables may be asked about the position on the board: few enough men, no castling rights. They know
// nothing of repetitions and the fifty-move rule.
bool IsWithinTables();

// What an earlier game has taught of the position on the board: the depth that it was searched to, in
// sixtieths of a ply, and the score from the side to move's view. False when there is nothing.
extern bool (*LearnedProber)(int* depth, int* score);

// Asks the tablebases about the position of a node, where the answer is worth the time. True, with the score
// as the node returns it; the result is kept in the transposition table.
bool ProbeTablebases(const Node& node, int* score);

// Asks for a learned score that is as deep as the node.
bool ProbeLearned(const Node& node, int* score);
