#include "search/modes.h"

#include "search/timecontrol.h"

int UciMode = 0;
int PostMode = 0;
int PonderingAllowed = 1;
int PonderingOn = 1;

int Pondering = 0;
int PonderSearch = 0;
int Analyzing = 0;
int QuietPreSearch = 0;

Move PredictedMove = NO_MOVE;

int StopRequested = 0;
int NewGameRequested = 0;
int UndoRequested = 0;
int ForceRequested = 0;
int ExitRequested = 0;
int ResultReceived = 0;

void (*QuitProgram)() = nullptr;

void ClearRequests() {
    StopRequested = NewGameRequested = UndoRequested = 0;
    ForceRequested = ExitRequested = ResultReceived = 0;
}

bool IsGameRequested() {
    return NewGameRequested || UndoRequested || ForceRequested || ResultReceived;
}

bool IsWaitingSearch() {
    return Pondering || PonderSearch || EngineTime == INFINITE_TIME;
}
