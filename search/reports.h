#pragma once

// What the search prints while it thinks. Scores are shown from the engine's side; times in centiseconds, in
// the UCI lines too, deliberately.

// The xboard line, in PostMode and outside silent searches. Unless forced, not within the first 100000 nodes.
void PrintThinking(int force);

// The same at any time: the last line of a search.
void PrintThinkingLine();

// The UCI line: with the principal variation, or else with the root move under way. `boundType` 1 marks an
// upper bound, 2 a lower one. Unless forced, not within 30000 nodes of the last one.
void PrintUciInfo(int force, int boundType, int withPv);

// The report of the active dialect; with the principal variation.
void PrintReport(int force, int boundType);

// The UCI line of node rate and table use; nothing within the first 200000 nodes.
void PrintNodeRate();

// Counts a look at the clock, and prints the node rate once in a while.
void CountDownNodeRate();

// Appends the principal variation, each move as " %s", from the root position on. Moves behind the first come
// from the transposition table and are verified. Remembers the reply as PonderMove, and the move after it
// with its position as what the next search expects.
void PrintPv();

// Starts counting reports anew, before a search.
void ResetReports();
