#include "search/timecontrol.h"

#include <algorithm>
#include <iterator>

#include "platform/platform.h"
#include "search/draws.h"
#include "search/modes.h"

int EngineTime = NO_CLOCK;
int OpponentTime = 0;
int BaseTime = 1000;
int MovesToGo = 0;
int OwnIncrement = 0;
int OpponentIncrement = 0;
int MoveTime = 0;
int MaxDepth = UNLIMITED_DEPTH;
int NodeLimit = 0;
int MateSearch = 0;

int TargetTime = NO_TIME_LIMIT;
int MaxTime = NO_TIME_LIMIT;
int PollInterval = 50000;
int GameSearches = 0;

namespace {

int64_t SearchStart = 0;  // wall clock in centiseconds
int64_t LimitStart = 0;

int64_t ClockCs() {
    return ClockMs() / 10;
}

// Moves up to and including the next time control, at most 30.
int64_t CountMovesLeft(int gamePly) {
    constexpr int64_t HORIZON = 30;
    if (UciMode) return std::min<int64_t>(HORIZON, MovesToGo);
    // The controls end at multiples of MovesToGo; this is the first one not yet passed.
    const int64_t gameMove = gamePly / 2 + 1;
    const int64_t control = (gameMove + MovesToGo - 1) / MovesToGo * MovesToGo;
    return std::min(HORIZON, control - gameMove + 1);
}

// The draw score of an engine that is clearly ahead on the clock: the shorter its own time, counted in tenths
// of a unit, the more welcome a draw. With a further control to come only when that time is very short.
// `time` is what is left without the reserve.
void SetContempt(int64_t time, int64_t half) {
    constexpr int DRAW_SCORES[] = {50, 40, 32, 26, 22, 20, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5};
    constexpr int64_t LAST = std::size(DRAW_SCORES) - 1;
    if (OpponentTime <= 0) return;
    const int64_t unit =
        std::max<int64_t>(250, std::min<int64_t>(3 * int64_t{OwnIncrement}, OpponentTime / 20));
    const bool isClearlyAhead = OpponentTime < half && time - OpponentTime > unit / 2;
    if (!isClearlyAhead || (MovesToGo > 0 && EngineTime >= 2 * unit)) return;
    DrawScore = DRAW_SCORES[std::clamp<int64_t>((time - 1) * 10 / unit, 0, LAST)];
}

void SetPollInterval() {
    PollInterval = TargetTime < 101 ? 5000 : TargetTime < 301 ? 20000 : 50000;
    if (NodeLimit > 0) PollInterval = std::min(PollInterval, NodeLimit);
}

}  // namespace

int ClockTime(int time) {
    return time == NO_CLOCK ? 0 : time;
}

bool IsTimedSearch() {
    return MoveTime != 0 || (EngineTime != NO_CLOCK && EngineTime != INFINITE_TIME);
}

bool IsUnlimitedSearch() {
    if (IsWaitingSearch() || Analyzing) return true;
    // A depth that no search reaches is no limit.
    return !IsTimedSearch() && MaxDepth > DEEPEST_ITERATION && NodeLimit <= 0 && MateSearch <= 0;
}

void AllocateTime(int gamePly) {
    if (MoveTime != 0) {
        TargetTime = MaxTime = MoveTime;
        SetPollInterval();
        return;
    }
    // Wide enough for any clock and increment that a command can name.
    const int64_t time = int64_t{EngineTime} * 95 / 100;
    const int64_t half = (time - 1) / 2;
    int64_t base = 0, maximum = 0;
    if (MovesToGo <= 0) {
        base = (29 * int64_t{OwnIncrement} + time - 1) / 30;
        maximum = std::min(7 * base, half);
    } else {
        const int64_t moves = std::max<int64_t>(1, CountMovesLeft(gamePly));
        base = ((moves - 1) * OwnIncrement + time - 1) / moves;
        maximum = 7 * base;
    }
    // The first moves out of the book decide what the game is about.
    if (GameSearches < 2) base += base / 5;
    base = std::max<int64_t>(base, 5);
    maximum = std::min({maximum, 7 * base, half});
    const int64_t target = std::max<int64_t>(base * 3 / 4, 1);
    TargetTime = static_cast<int>(std::clamp<int64_t>(target, 1, NO_TIME_LIMIT));
    MaxTime = static_cast<int>(std::clamp<int64_t>(maximum, -NO_TIME_LIMIT, NO_TIME_LIMIT));
    SetContempt(time, half);
    SetPollInterval();
}

void SetNoTimeLimit() {
    TargetTime = MaxTime = NO_TIME_LIMIT;
    SetPollInterval();
}

void StartSearchClock() {
    SearchStart = LimitStart = ClockCs();
}

void RestartLimitClock() {
    LimitStart = ClockCs();
}

int ElapsedTime() {
    return static_cast<int>(ClockCs() - SearchStart);
}

int LimitElapsed() {
    return static_cast<int>(ClockCs() - LimitStart);
}
