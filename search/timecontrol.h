#pragma once

#include <cstdint>

// Clocks, limits and the time for one move. Times are centiseconds.

constexpr int NO_CLOCK = -1;
constexpr int INFINITE_TIME = 999999999;  // the value of EngineTime during a UCI infinite search
constexpr int NO_TIME_LIMIT = 9999999;    // of TargetTime and MaxTime
constexpr int UNLIMITED_DEPTH = 998;
constexpr int DEEPEST_ITERATION = 98;  // the last one that is searched

// The time control, set by commands and by input during a search.
extern int EngineTime;    // own time left, NO_CLOCK or INFINITE_TIME
extern int OpponentTime;  // 0 when unknown
extern int BaseTime;      // of the whole control
extern int MovesToGo;     // UCI: moves to the next control; xboard: moves of a control; 0 for the whole game
extern int OwnIncrement;  // per move
extern int OpponentIncrement;  // per move
extern int MoveTime;           // fixed time per move, 0 for none
extern int MaxDepth;           // plies, UNLIMITED_DEPTH for none
extern int NodeLimit;          // nodes per search, 0 for none
extern int MateSearch;         // look for a mate in so many moves, 0 for none

// The allocation for the move under way, written by AllocateTime and SetNoTimeLimit.
extern int TargetTime;
extern int MaxTime;
extern int PollInterval;  // nodes between two looks at clock and input

// Searches made in this game since it left the book; counted by the search, reset by a new game.
extern int GameSearches;

// The time on a clock as EngineTime: never NO_CLOCK, which an overdrawn clock must not turn into.
int ClockTime(int time);

// Whether the search under way keeps to TargetTime and MaxTime.
bool IsTimedSearch();

// Whether nothing but input can end the search under way.
bool IsUnlimitedSearch();

// Sets TargetTime and MaxTime from the clock and the limits, and PollInterval from TargetTime, for a move
// after `gamePly` plies of the game; and DrawScore, when the clocks say that time will decide the game. The
// search must be a timed one.
void AllocateTime(int gamePly);

// Sets a search without a clock.
void SetNoTimeLimit();

// Starts and reads the clock of the search: ElapsedTime is what reports show; LimitElapsed is what counts
// against the limits, and starts anew when pondering turns into thinking.
void StartSearchClock();
void RestartLimitClock();
int ElapsedTime();
int LimitElapsed();
