#include "search/polling.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "core/board.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "core/textfold.h"
#include "platform/input.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/search.h"
#include "search/timecontrol.h"

int PollCountdown = 0;
int PreviousScore = 0;
Move ExpectedMove = NO_MOVE;

namespace {

void RequestStop() {
    StopRequested = 1;
    PonderSearch = 0;
}

void AnswerStatistics() {
    const char* move = MoveToText(RootMove(CurrentRootMove));
    Print("stat01: %d %lld %d %d %d %s\n", ElapsedTime(), static_cast<long long>(Nodes), IterationDepth + 1,
          RootMoveCount - CurrentRootMove, RootMoveCount, move);
    FlushOutput();
}

void StartThinking() {
    Pondering = PonderSearch = 0;
    if (IsTimedSearch()) AllocateTime(RootGamePly);
    RestartLimitClock();
    PollCountdown = 0;
}

// Carries out a line of the polling table; false for any other line.
bool HandleNamedLine(const std::string& line) {
    const auto request = [](int& flag) {
        flag = 1;
        RequestStop();
        return true;
    };
    if (line == "?" || line == "stop") return request(StopRequested);
    if (line == "undo") return request(UndoRequested);
    if (line == "exit") return request(ExitRequested);
    if (line == "new") return request(NewGameRequested);
    if (line == "force") return request(ForceRequested);
    if (line == "post" || line == "nopost") {
        PostMode = line == "post";
        return request(StopRequested);
    }
    if (line == "q" || line == "quit") {
        QuitProgram();
        return true;
    }
    if (line == ".") {
        AnswerStatistics();
    } else if (line == "isready") {
        Print("readyok\n");
        FlushOutput();
    } else if (line == "ponderhit") {
        if (PonderSearch) StartThinking();
    } else if (line == "hard") {
        if (!PonderingOn && PonderingAllowed) {
            PonderingOn = 1;
            RequestStop();
        }
    } else if (line == "easy") {
        PonderingOn = 0;
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

bool HandleClockLine(const std::string& line) {
    if (const char* time = FindArgument(line, "time")) {
        EngineTime = std::atoi(time);
        if (!Pondering && !PonderSearch) RequestStop();
        return true;
    }
    if (const char* time = FindArgument(line, "otim")) {
        OpponentTime = std::atoi(time);
        return true;
    }
    return false;
}

// "result" with or without what follows it: the game is over.
bool HandleResult(const std::string& line) {
    if (line.compare(0, 6, "result") != 0) return false;
    ResultReceived = 1;
    if (!Pondering) RequestStop();
    return true;
}

// A move while pondering: the predicted one turns pondering into thinking.
bool HandlePredictedMove(const std::string& line) {
    if (!Pondering || !LooksLikeMove(line.c_str())) return false;
    // The board stands somewhere in the tree; the text needs no board.
    std::string move = line.substr(0, 5);
    std::string predicted = MoveToText(PredictedMove);
    std::transform(move.begin(), move.end(), move.begin(), FoldCase);
    if (predicted.size() == 4) move.resize(4);
    if (move != predicted) return false;
    StartThinking();
    return true;
}

void HandleLine(const std::string& line) {
    if (line.empty()) return;
    if (HandleNamedLine(line) || HandleClockLine(line) || HandleResult(line) || HandlePredictedMove(line))
        return;
    // Never lost: interpreted, in order, when the search has ended. A search that waits for input ends now.
    KeepLine(line);
    if (IsWaitingSearch() || Analyzing || QuietPreSearch) RequestStop();
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

void SetPollCountdown() {
    PollCountdown = PollInterval;
    if (NodeLimit > 0) {
        const int64_t left = std::max<int64_t>(NodeLimit - Nodes, 0);
        PollCountdown = static_cast<int>(std::min<int64_t>(PollCountdown, left));
    }
}

}  // namespace

void CheckTime() {
    constexpr int PRE_SEARCH_TIME = 100;  // centiseconds
    PollDuringSearch();
    SetPollCountdown();
    if (StopRequested) return;
    if (NodeLimit > 0 && Nodes >= NodeLimit) StopRequested = 1;
    if (QuietPreSearch && ElapsedTime() > PRE_SEARCH_TIME) {
        StopRequested = 1;
        QuietPreSearch = 0;
    }
    if (UciMode) CountDownNodeRate();
    if (!IsTimedSearch() || IsWaitingSearch() || Analyzing) return;
    if (IsTimeUp()) StopRequested = 1;
}

void PollDuringSearch() {
    std::string line;
    while (!StopRequested && TakeWaitingLine(line)) HandleLine(line);
    if (!StopRequested && IsUnlimitedSearch() && HasInputEnded()) RequestStop();
}

void WaitForInput() {
    while (!StopRequested && IsWaitingSearch()) {
        PollDuringSearch();
        if (!StopRequested && IsWaitingSearch()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}
