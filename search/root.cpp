#include "search/root.h"

#include <algorithm>

#include "core/board.h"
#include "core/keys.h"
#include "core/makemove.h"
#include "core/movescore.h"
#include "search/modes.h"
#include "search/ordering.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/reports.h"
#include "search/search.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

int IterationDepth = 0;
int RootScore = 0;
int CurrentRootMove = 0;
int RootGamePly = 0;
Move PonderMove = NO_MOVE;
int PreviousScore = 0;
Move ExpectedMove = NO_MOVE;

namespace {

constexpr int NARROW_WIDTH = 20;
constexpr int WIDE_WIDTH = 120;

// What the last search would play in the position with this key and side to move.
uint64_t ExpectedKey = 0;
int ExpectedSide = WHITE;
Move ExpectedAnswer = NO_MOVE;

// Searches root move i, from its mover's view.
int SearchRootMove(int i, int alpha, int beta) {
    alpha = std::max(alpha, -MATE);
    beta = std::min(beta, MATE);
    const int depth = IterationDepth * PLY_DEPTH + (RootGivesCheck[i] ? 90 : 30);
    MakeMove(MoveList[i].Move, 1);
    PlyInfo[1].InCheck = RootGivesCheck[i];
    Ply = 1;
    const int score = -Search(-beta, -alpha, depth, 1, beta == alpha + 1 ? -1 : 0);
    Ply = 0;
    UnmakeMove();
    return score;
}

// Takes a score over as the root's and reports it.
void TakeScore(int score, int boundType) {
    RootScore = score;
    PrintReport(0, boundType);
}

// Searches root move i again after it failed high at `score` with a window of `width` above it.
int ResearchHigh(int i, int score, int width) {
    if (score + width >= MATE) return SearchRootMove(i, score, MATE);
    const int again = SearchRootMove(i, score, score + width);
    if (StopRequested || again < score + width) return again;
    TakeScore(again, BOUND_LOWER);
    return SearchRootMove(i, again, MATE);
}

int ResearchLow(int score) {
    if (score - WIDE_WIDTH >= -MATE + 1) {
        const int again = SearchRootMove(0, score - WIDE_WIDTH, score);
        if (StopRequested || again > score - WIDE_WIDTH) return again;
        score = again;
        TakeScore(score, BOUND_UPPER);
    }
    return SearchRootMove(0, -MATE, score);
}

void SearchFirstMove() {
    const int expected = RootScore;
    int score = SearchRootMove(0, expected - NARROW_WIDTH, expected + NARROW_WIDTH);
    if (StopRequested) return;
    if (score >= expected + NARROW_WIDTH) {
        TakeScore(score, BOUND_LOWER);
        score = ResearchHigh(0, score, WIDE_WIDTH);
    } else if (score <= expected - NARROW_WIDTH) {
        TakeScore(score, BOUND_UPPER);
        score = ResearchLow(score);
    }
    if (!StopRequested) TakeScore(score, BOUND_NONE);
}

void SearchLaterMove(int i) {
    int score = SearchRootMove(i, RootScore, RootScore + 1);
    if (StopRequested) return;
    if (score > RootScore) {
        MoveToFront(i);
        TakeScore(score, BOUND_LOWER);
        score = ResearchHigh(0, score, NARROW_WIDTH);
        if (!StopRequested) TakeScore(score, BOUND_NONE);
    } else if (UciMode && i == RootMoveCount - 1) {
        PrintNodeRate();
    }
}

// Orders the root moves behind the first by the work that they made.
void SortRootMoves() {
    for (int last = 2; last < RootMoveCount; ++last) {
        for (int i = last; i > 1 && RootNodes[i] > RootNodes[i - 1]; --i) {
            std::swap(MoveList[i], MoveList[i - 1]);
            std::swap(RootNodes[i], RootNodes[i - 1]);
            std::swap(RootGivesCheck[i], RootGivesCheck[i - 1]);
        }
    }
}

void RunIteration(int depth) {
    IterationDepth = depth;
    MaxPlyReached = depth + 1;
    if (depth >= 4) PollCountdown = -1;
    ++Nodes;
    --PollCountdown;
    if (NodeLimit > 0 && Nodes >= NodeLimit) StopRequested = 1;
    CurrentRootMove = 0;
    if (UciMode && Nodes > 200000) PrintUciInfo(1, BOUND_NONE, 0);
    for (int i = 0; i < RootMoveCount && !StopRequested; ++i) {
        CurrentRootMove = i;
        const int64_t nodesBefore = Nodes;
        const Move move = MoveList[i].Move;
        if (i == 0) {
            SearchFirstMove();
        } else {
            SearchLaterMove(i);
        }
        // A move that has become the best stands in front now.
        RootNodes[MoveList[i].Move == move ? i : 0] = Nodes - nodesBefore;
        if (i == 0) SortRootMoves();
    }
    if (!StopRequested) {
        HashStore(depth * PLY_DEPTH + 90, RootMove(0), RootScore, BOUND_EXACT, 0, 0, 0);
    }
}

// Whether the result can't get better: a mate within the depth searched, or the mate that was asked for.
bool HasFoundMate(int depth) {
    if (MateSearch > 0) return RootScore > MATE - 2 * MateSearch;
    return RootScore > MATE + 1 - depth || RootScore < depth - (MATE + 1);
}

void ResetSearch() {
    AgeHistory();
    ++SearchNumber;
    Nodes = 0;
    HashWrites = 0;
    TablebaseHits = 0;
    MaxPlyReached = 0;
    IterationDepth = 0;
    CurrentRootMove = 0;
    RootGamePly = GamePly();
    Ply = 0;
    PonderMove = NO_MOVE;
    SetPollCountdown();
    PreviousScore = LastScoreToMove();
    const bool isExpected = PositionKey() == ExpectedKey && board.SideToMove == ExpectedSide;
    ExpectedMove = isExpected ? ExpectedAnswer : NO_MOVE;
    ResetReports();
}

void Deepen(int maxDepth) {
    const int mateDepth = MateSearch > 0 ? std::min(MateSearch, DEEPEST_ITERATION) * 2 + 1 : maxDepth;
    const int limit = std::min({maxDepth, mateDepth, DEEPEST_ITERATION + 1});
    for (int depth = 1; depth < limit && !StopRequested; ++depth) {
        RunIteration(depth);
        if (!StopRequested && HasFoundMate(depth)) break;
    }
}

}  // namespace

int IterativeDeepening(int maxDepth, int /*useBook*/) {
    ResetSearch();
    const int isOver = PrepareRoot();
    if (!isOver) {
        const bool isForced = RootMoveCount < 2 && !Analyzing;
        if (!isForced) Deepen(maxDepth);
        WaitForInput();
    }
    ++GameSearches;
    return isOver;
}

void ExpectMove(Move move) {
    ExpectedKey = PositionKey();
    ExpectedSide = board.SideToMove;
    ExpectedAnswer = move;
}

void ResetRootMemory() {
    LastScore = 0;
    LastScoreSide = WHITE;
    PreviousScore = 0;
    ExpectedAnswer = NO_MOVE;
    GameSearches = 0;
}
