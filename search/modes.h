#pragma once

#include "core/types.h"

// How the program is being used, and what has been asked for while it searches.

// Modes, set by the commands of the front end and, where noted, by input during a search.
extern int UciMode;           // replies in the UCI dialect; no result announcements
extern int PostMode;          // xboard thinking output is printed; also set by input
extern int PonderingAllowed;  // the setting "Pondering": whether PonderingOn may be switched on
extern int PonderingOn;       // think on the opponent's time; also set by input

// What the current search is for. At most one of them is set.
extern int Pondering;       // on a predicted move that stands on the board; cleared by the move's arrival
extern int PonderSearch;    // a UCI "go ponder"; cleared by "ponderhit" and by what ends the search
extern int Analyzing;       // analyze mode
extern int QuietPreSearch;  // a silent search for a move to ponder on; it ends after 100 centiseconds

// The predicted reply that stands on the board while Pondering; set by the thinking driver.
extern Move PredictedMove;

// Requests that input has left during a search; cleared by ClearRequests before the next one.
extern int StopRequested;     // unwind the search; its results so far stand
extern int NewGameRequested;  // the front end is to set up a new game
extern int UndoRequested;     // ... to take back a move
extern int ForceRequested;    // ... to enter force mode
extern int ExitRequested;     // ... to leave analyze mode
extern int ResultReceived;    // the game is over: no move is wanted any more

void ClearRequests();

// Whether input has asked for something that takes the game out of the engine's hands: a new game, taking
// back, force mode, or its end.
bool IsGameRequested();

// Whether the search under way must not answer before input ends it: pondering in either dialect, or
// infinite.
bool IsWaitingSearch();

// Called for "q" and "quit" at any time; set by the front end at start-up, ends the program.
extern void (*QuitProgram)();
