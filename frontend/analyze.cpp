#include "frontend/analyze.h"

#include <string>

#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "frontend/commands.h"
#include "frontend/newgame.h"
#include "frontend/tokens.h"
#include "platform/input.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/root.h"
#include "search/timecontrol.h"

namespace {

bool IsInAnalyzeMode = false;

// Searches until input or the search itself ends it; false when there is nothing to search.
bool AnalyzePosition() {
    constexpr int DEPTH = 100;
    ClearRequests();
    if (!CheckPosition()) return false;
    SetNoTimeLimit();
    StartSearchClock();
    Analyzing = 1;
    const bool isOver = IterativeDeepening(DEPTH, 0) != 0;
    Analyzing = 0;
    return !isOver;
}

void EnterMove(const std::string& line, bool isSearching) {
    const Move move = TextToMove(line.c_str());
    if (!HasPhantomMen() && IsLegalMove(move)) {
        if (!isSearching) Print("move maked...\n");
        PlayMove(move);
    } else {
        Print("Illegal move: %s\n", line.c_str());
    }
    FlushOutput();
}

// Carries out a line that ended the search or came after it.
void InterpretAnalyzeLine(const std::string& line, bool isSearching) {
    if (LooksLikeMove(line.c_str())) {
        EnterMove(line, isSearching);
    } else if (line == ".") {
        Print("stat01: 0 0 0 0 0\n");
        FlushOutput();
    } else if (MatchKeyword("new", line.c_str())) {
        NewGameRequested = 1;
    } else if (MatchKeyword("undo", line.c_str())) {
        UndoRequested = 1;
    } else if (line.compare(0, 4, "exit") == 0) {
        ExitRequested = 1;
    } else if (!MatchKeyword("analyze", line.c_str())) {
        SetInputLine(line);
        InterpretCommand();
    }
}

}  // namespace

void RunAnalyze() {
    // A command that analyze mode hands to the interpreter doesn't enter it again.
    if (IsInAnalyzeMode) return;
    IsInAnalyzeMode = true;
    for (;;) {
        const bool hasEnded = !AnalyzePosition() || !StopRequested;
        std::string line;
        if (HasKeptLine()) {
            ReadLine(line);
            InterpretAnalyzeLine(line, true);
        } else if (hasEnded) {
            if (!ReadLine(line)) break;
            InterpretAnalyzeLine(line, false);
        }
        if (NewGameRequested) {
            NewGame();
        } else if (ExitRequested) {
            break;
        } else if (UndoRequested) {
            TakeBackMove();
        }
        if (!HasKeptLine() && HasInputEnded()) break;
    }
    ClearRequests();
    IsInAnalyzeMode = false;
}
