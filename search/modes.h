#pragma once

#include <string>

#include "core/types.h"

// How the program is being used, and what has been asked for while it searches.

// Modes, set by the commands of the front end and, where noted, by input during a search.
extern int UciMode;           // replies in the UCI dialect; no result announcements
extern int ProtocolVersion;   // of the xboard protocol: 1 until an interface names another
extern int DebugMode;         // UCI: tells how the time was spent
extern int PostMode;          // xboard thinking output is printed
extern int PonderingAllowed;  // the setting "Pondering": whether PonderingOn may be switched on
extern int PonderingOn;       // think on the opponent's time; also set by input

// What the current search is for.
extern int Pondering;       // on a predicted move that stands on the board; cleared by the move's arrival
extern int PonderSearch;    // a UCI "go ponder"; cleared by "ponderhit" and with the end of the search
extern int InfiniteSearch;  // a UCI "go infinite"; cleared with the end of the search
extern int Analyzing;       // analyze mode
extern int QuietPreSearch;  // a silent search for a move to ponder on; it ends after 100 centiseconds

// The predicted reply that stands on the board while Pondering; set by the thinking driver.
extern Move PredictedMove;

// What input has asked for during the search; cleared by ClearRequests before the next one.
extern int StopRequested;  // unwind the search; its results so far stand
extern int MoveUnwanted;   // the game is out of the engine's hands: no move is to be made or announced

// StopRequested when the node limit has asked for it, not input: a search that must wait for input waits.
constexpr int LIMIT_REACHED = 2;

void ClearRequests();

// Whether the search under way must not answer before input ends it: pondering in either dialect, or
// infinite.
bool IsWaitingSearch();

// Whether the search is for a move in a game that stands on the board as it was played: what it finds is
// worth learning. Not on a predicted move, not analysis, which a UCI interface asks for as an infinite
// search.
bool IsGameSearch();

// Whether any command ends the search under way, because nobody waits for its move: pondering, infinite,
// analysing, or looking for a move to ponder on.
bool IsInterruptible();

// What the front end does for the search with a line of input; set at start-up.
struct InputHooks {
    void (*Quit)() = nullptr;  // for "q" and "quit" at any time: ends the program
    bool (*IsCommand)(const char* line) = nullptr;
    // Carries out a line that disturbs no search, such as a question; false for any other. Not for a search
    // whose move is due, which comes before the answer.
    bool (*AnswerAside)(const std::string& line) = nullptr;
};
extern InputHooks Hooks;
