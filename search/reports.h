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

// The UCI lines of all principal variations, of which `failingLine` is a bound if `boundType` is 1 or 2. What
// kind of score they show, centipawns or a mate, follows the first line's, deliberately. Not within the first
// 50000 nodes.
void PrintMultiPv(int failingLine, int boundType);

// The same at any time: the last report of a search.
void PrintLines();

// What the active dialect and MultiPvCount have for a new score of root entry `line`.
void PrintReport(int line, int boundType);

// The UCI line of node rate and table use; nothing within the first 200000 nodes.
void PrintNodeRate();

// Counts a look at the clock, and prints the node rate once in a while.
void CountDownNodeRate();

// Appends the principal variation of root entry `line`, each move as " %s". Moves behind the first come from
// the tablebases, down to the mate, or from the transposition table and are verified. That of the best line
// gives PonderMove, its reply, and with the move after that what the next search expects.
void PrintPv(int line);

// Starts the countdown to the node rate anew, before a search.
void ResetReports();
