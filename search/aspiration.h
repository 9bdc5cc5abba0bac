#pragma once

// Windows around the score that a root move is expected to have. A score outside of its window is only a
// bound, and is searched again with a window beyond it, twice at most.

constexpr int NARROW_WIDTH = 20;  // centipawns

// Takes `score` over as that of root entry i and reports it, as a bound or, with BOUND_NONE, as exact.
// Returns where the entry stands then. The root position is on the board.
using ScoreTaker = int (*)(int i, int score, int boundType);

// Makes root move i, searches it to the depth of the iteration and unmakes it. Window and result are from its
// mover's view; the result means nothing once StopRequested is set.
int SearchRootEntry(int i, int alpha, int beta);

// Searches root entry i around RootScores[i], first with NARROW_WIDTH on both sides; an exact score is taken
// last. Returns where the entry stands then. A stop leaves it with what was taken before.
int SearchAround(int i, ScoreTaker take);

// The same for an entry that has proved better than its window: at least `score`. The next window is `width`
// wide.
int SearchAbove(int i, int score, int width, ScoreTaker take);
