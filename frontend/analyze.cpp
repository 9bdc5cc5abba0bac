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

// Limits that commands have set for games, put away while analyze mode searches without any.
class LimitKeeper {
  public:
    LimitKeeper() : nodeLimit_(NodeLimit), mateSearch_(MateSearch), searchMovesCount_(SearchMovesCount) {
        NodeLimit = MateSearch = SearchMovesCount = 0;
    }
    ~LimitKeeper() {
        NodeLimit = nodeLimit_;
        MateSearch = mateSearch_;
        SearchMovesCount = searchMovesCount_;
    }
    LimitKeeper(const LimitKeeper&) = delete;
    LimitKeeper& operator=(const LimitKeeper&) = delete;

  private:
    int nodeLimit_, mateSearch_, searchMovesCount_;
};

// Searches until input or the search itself ends it.
void AnalyzePosition() {
    constexpr int DEPTH = 100;
    ClearRequests();
    if (!CheckPosition()) return;
    const LimitKeeper keeper;
    SetNoTimeLimit();
    StartSearchClock();
    Analyzing = 1;
    IterativeDeepening(DEPTH, 0);
    Analyzing = 0;
}

void TryMove(const char* text, bool isSearching) {
    const Move move = TextToMove(text);
    if (!HasPhantomMen() && IsLegalMove(move)) {
        if (!isSearching) Print("move maked...\n");
        PlayMove(move);
    } else {
        Print("Illegal move: %s\n", isSearching ? MoveToText(move) : text);
    }
    FlushOutput();
}

// Carries out a line that ended the search or came after it; false for "exit".
bool InterpretAnalyzeLine(const std::string& line, bool isSearching) {
    const auto startsWith = [&](const char* word) { return line.rfind(word, 0) == 0; };
    if (startsWith("exit")) return false;
    if (const char* text = FindMoveText(line.c_str())) {
        TryMove(text, isSearching);
    } else if (line == ".") {
        Print("stat01: 0 0 0 0 0\n");
        FlushOutput();
    } else if (startsWith("new")) {
        NewGame();
    } else if (startsWith("undo")) {
        TakeBackMove();
    } else if (!MatchKeyword("analyze", line.c_str())) {
        SetInputLine(line);
        InterpretCommand();
    }
    return true;
}

}  // namespace

void RunAnalyze() {
    // A command that analyze mode hands to the interpreter doesn't enter it again.
    if (IsInAnalyzeMode) return;
    IsInAnalyzeMode = true;
    std::string line;
    do {
        AnalyzePosition();
        // A search that "stop" or its own end has ended waits here for what comes next.
        const bool isSearching = HasKeptLine();
        if (!ReadLine(line)) break;
        if (!InterpretAnalyzeLine(line, isSearching)) break;
    } while (!HasInputEnded() || HasKeptLine());
    ClearRequests();
    IsInAnalyzeMode = false;
}
