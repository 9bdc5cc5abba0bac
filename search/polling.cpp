#include "search/polling.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include "core/board.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "core/textfold.h"
#include "core/textnumber.h"
#include "platform/input.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/search.h"
#include "search/timecontrol.h"

int PollCountdown = 0;

namespace {

void AnswerStatistics() {
    const char* move = MoveToText(RootMove(CurrentRootMove));
    Print("stat01: %d %lld %d %d %d %s\n", ElapsedTime(), static_cast<long long>(Nodes), IterationDepth + 1,
          RootMoveCount - CurrentRootMove, RootMoveCount, move);
    FlushOutput();
}

// What was pondering goes on as a timed search.
void StopPondering() {
    Pondering = PonderSearch = 0;
    if (IsTimedSearch()) AllocateTime(RootGamePly);
    RestartLimitClock();
}

std::string TrimBlanks(const std::string& text) {
    const size_t start = text.find_first_not_of(' ');
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(' ') - start + 1);
}

// Lines that are answered at any time, even behind one that has been kept; false for any other line.
bool HandleUrgentLine(const std::string& line) {
    if (line == "?" || line == "stop") {
        StopRequested = 1;
    } else if (line == "q" || line == "quit") {
        Hooks.Quit();
    } else if (line == "isready") {
        Print("readyok\n");
        FlushOutput();
    } else if (line == "ponderhit") {
        if (PonderSearch) StopPondering();
    } else {
        return false;
    }
    return true;
}

// The argument of "keyword number", or null when the line is something else.
const char* FindArgument(const std::string& line, const std::string& keyword) {
    if (line.compare(0, keyword.size() + 1, keyword + " ") != 0) return nullptr;
    return line.c_str() + keyword.size() + 1;
}

// Lines that are carried out at once, after which the search goes on; but a clock makes an engine that is
// thinking about its move answer. False for any other line.
bool HandlePassingLine(const std::string& line) {
    if (line == ".") {
        AnswerStatistics();
    } else if (line == "easy") {
        PonderingOn = 0;
    } else if (line == "hard" && (PonderingOn || !PonderingAllowed)) {
        // Nothing to switch on.
    } else if (const char* opponentTime = FindArgument(line, "otim")) {
        OpponentTime = ReadNumber(opponentTime);
    } else if (const char* time = FindArgument(line, "time")) {
        EngineTime = ClockTime(ReadNumber(time));
        if (!IsInterruptible()) StopRequested = 1;
    } else {
        return false;
    }
    return true;
}

// Whether the line takes the game out of the engine's hands: its move is no longer wanted.
bool TakesGameAway(const std::string& line) {
    for (const char* word : {"undo", "remove", "new", "force", "edit", "analyze"}) {
        if (line == word) return true;
    }
    for (const char* word : {"result", "setboard ", "loadfen "}) {
        if (line.starts_with(word)) return true;
    }
    return false;
}

// Lines that end the search, even behind one that has been kept, and are then interpreted like any other;
// false for any other line.
bool HandleEndingLine(const std::string& line) {
    // The game is over; pondering goes on until a command ends it, deliberately.
    if (Pondering && line.starts_with("result")) return true;
    const bool takesGameAway = TakesGameAway(line);
    if (!takesGameAway && line != "exit" && line != "post" && line != "nopost" && line != "hard")
        return false;
    MoveUnwanted = MoveUnwanted || takesGameAway;
    KeepLine(line);
    StopRequested = 1;
    return true;
}

// A move while pondering: the predicted one turns pondering into thinking. Any other is interpreted when the
// board is back at the root.
bool HandlePredictedMove(const std::string& line) {
    const char* text = FindMoveText(line.c_str());
    if (!Pondering || text == nullptr) return false;
    const std::string predicted = MoveToText(PredictedMove);
    std::string move = std::string(text).substr(0, 5);
    std::transform(move.begin(), move.end(), move.begin(), FoldCase);
    // A letter that names no piece says nothing.
    if (move.size() == 5 && std::string("qrbn").find(move[4]) == std::string::npos) move.pop_back();
    if (move != predicted) return false;
    StopPondering();
    return true;
}

void HandleLine(const std::string& raw) {
    const std::string line = TrimBlanks(raw);
    if (HandleUrgentLine(line)) return;
    if (!HasKeptLine()) {
        if (HandlePassingLine(line)) return;
        if (IsInterruptible() && Hooks.AnswerAside(line)) return;
    }
    if (HandleEndingLine(line)) return;
    if (!HasKeptLine()) {
        // What is no command does nothing and must not end a search either.
        if (HandlePredictedMove(line) || !Hooks.IsCommand(line.c_str())) return;
    }
    KeepLine(raw);
}

// The rules by which a timed search goes on or stops.
bool IsTimeUp() {
    const int elapsed = LimitElapsed();
    const bool isEasy = ExpectedMove != NO_MOVE && RootMove(0) == ExpectedMove;
    if (!isEasy) ExpectedMove = NO_MOVE;
    if (CurrentRootMove > 0 && !isEasy) {
        return elapsed > std::min(static_cast<int>(int64_t{TargetTime} * 5 / 3), MaxTime);
    }
    int64_t time = isEasy ? TargetTime / 3 : TargetTime;
    if (RootScore - PreviousScore > 25 && PreviousScore >= -9 && PreviousScore <= 119) {
        time *= 2;
    } else if (PreviousScore - RootScore > 60) {
        time *= GameSearches > 0 ? 7 : 4;
    } else if (PreviousScore - RootScore > 20) {
        time = time / 2 + 2 * time;
    }
    return elapsed >= std::min<int64_t>(time, MaxTime);
}

}  // namespace

void SetPollCountdown() {
    PollCountdown = PollInterval;
    if (NodeLimit <= 0) return;
    const int64_t left = std::max<int64_t>(NodeLimit - Nodes, 1);
    PollCountdown = static_cast<int>(std::min<int64_t>(PollCountdown, left - 1));
}

void CheckTime() {
    constexpr int PRE_SEARCH_TIME = 100;  // centiseconds
    if (InputAvailable() || HasKeptLine()) PollDuringSearch();
    SetPollCountdown();
    if (StopRequested) return;
    if (NodeLimit > 0 && Nodes >= NodeLimit) StopRequested = LIMIT_REACHED;
    if (QuietPreSearch && ElapsedTime() > PRE_SEARCH_TIME) {
        StopRequested = 1;
        QuietPreSearch = 0;
    }
    if (UciMode) CountDownNodeRate();
    if (!IsTimedSearch() || IsInterruptible()) return;
    if (IsTimeUp()) StopRequested = 1;
}

void PollDuringSearch() {
    // It may have been kept behind the very line that began this search.
    if (HasKeptLine(TakesGameAway)) StopRequested = MoveUnwanted = 1;
    std::string line;
    for (;;) {
        if (HasKeptLine() && IsInterruptible()) StopRequested = 1;
        if (StopRequested || !TakeWaitingLine(line)) break;
        HandleLine(line);
    }
    if (!StopRequested && IsUnlimitedSearch() && HasInputEnded()) StopRequested = 1;
}

void WaitForInput() {
    if (StopRequested == LIMIT_REACHED && IsWaitingSearch()) StopRequested = 0;
    while (!StopRequested && IsWaitingSearch()) {
        PollDuringSearch();
        if (!StopRequested && IsWaitingSearch()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}
