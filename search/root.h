#pragma once

#include <cstdint>

#include "core/types.h"
#include "search/rootlist.h"

// Iterative deepening over the root list.

extern int IterationDepth;   // of the iteration under way, in plies from 1; reports print it plus 1
extern int CurrentRootMove;  // index of the root move being searched
extern int RootGamePly;      // plies of the game before the root
extern Move PonderMove;      // the expected reply to root move 0, 0 for none; set by PrintPv

// The ply at which the root's results are stored in the transposition table and read from it.
constexpr int ROOT_STORE_PLY = 1;

// What the last search expected of this one: its score from the engine's side, and the move that it would
// play here, 0 for none. The time control drops an expected move that is no longer the best.
extern int PreviousScore;
extern Move ExpectedMove;

// Searches the position on the board until `maxDepth` plies less one are complete (below 2: not at all), or a
// limit, a mate or input ends it; the side to move becomes the engine's side. With MultiPvCount above 1 it
// follows that many lines. The chosen move is root move 0, its score RootScore. Returns 1 when the game is
// over at the root, else 0. `useBook` allows an answer from the opening book. Where tablebases know every
// root move, they answer whatever the limits, at once.
int IterativeDeepening(int maxDepth, int useBook);

// Remembers that the engine expects to play `move` in the position on the board.
void ExpectMove(Move move);

// Whether the game on the board goes on from the one that was searched last, which may have taken another
// turn at its last move.
bool ContinuesSearchedGame();

// Forgets what was learnt for the next search of the same game: scores, expectations, the count of searches.
void ResetRootMemory();
