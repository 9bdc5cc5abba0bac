#include "search/modes.h"

int UciMode = 0;
int ProtocolVersion = 1;
int DebugMode = 0;
int PostMode = 0;
int PonderingAllowed = 1;
int PonderingOn = 1;

int Pondering = 0;
int PonderSearch = 0;
int InfiniteSearch = 0;
int Analyzing = 0;
int QuietPreSearch = 0;

Move PredictedMove = NO_MOVE;

int StopRequested = 0;
int MoveUnwanted = 0;

InputHooks Hooks;

void ClearRequests() {
    StopRequested = MoveUnwanted = 0;
}

bool IsWaitingSearch() {
    return Pondering || PonderSearch || InfiniteSearch;
}

bool IsGameSearch() {
    return !IsWaitingSearch() && !Analyzing;
}

bool IsInterruptible() {
    return IsWaitingSearch() || Analyzing || QuietPreSearch;
}
