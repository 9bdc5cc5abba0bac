#pragma once

// The search for several lines of play. Root entries 0..MultiPvCount-1 are the lines, best first by
// RootScores.

extern int MultiPvCount;  // lines wanted; 1 or less for an ordinary search. Set by the option

// One iteration: gives every line an exact score, then tests all other moves against the last line.
void SearchLines();
