#include "search/root.h"

#include <algorithm>
#include <cstdlib>

#include "core/board.h"
#include "core/keys.h"
#include "core/movegen.h"
#include "core/movescore.h"
#include "eval/evaluate.h"
#include "search/aspiration.h"
#include "search/bookanswer.h"
#include "search/evalcache.h"
#include "search/materialwindow.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/ordering.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/reports.h"
#include "search/search.h"
#include "search/tableanswer.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

int IterationDepth = 0;
int CurrentRootMove = 0;
int RootGamePly = 0;
Move PonderMove = NO_MOVE;
int PreviousScore = 0;
Move ExpectedMove = NO_MOVE;

namespace {

// What the last search would play in the position with this key and side to move.
uint64_t ExpectedKey = 0;
int ExpectedSide = WHITE;
Move ExpectedAnswer = NO_MOVE;

// Where the game that was searched last stood before its last move.
uint64_t SearchedKey = 0;

int TakeRootScore(int i, int score, int boundType) {
    RootScore = score;
    SetMaterialWindow();
    PrintReport(i, boundType);
    return i;
}

// Tests root entry i against the best; returns where it stands then.
int ChallengeBest(int i) {
    const int score = SearchRootEntry(i, RootScore, RootScore + 1);
    if (StopRequested) return i;
    if (score > RootScore) {
        RootScores[i] = score;
        MoveToFront(i);
        SetMaterialWindow();
        return SearchAbove(0, score, NARROW_WIDTH, TakeRootScore);
    }
    if (UciMode && i == RootMoveCount - 1) PrintNodeRate();
    return i;
}

void SearchMoves() {
    for (int i = 0; i < RootMoveCount && !StopRequested; ++i) {
        CurrentRootMove = i;
        const int64_t nodesBefore = Nodes;
        const int place = i == 0 ? SearchAround(0, TakeRootScore) : ChallengeBest(i);
        RootNodes[place] = Nodes - nodesBefore;
        if (i == 0) SortRootMoves(1);
    }
}

bool HasFoundSoughtMate() {
    return RootScore > MATE - 2 * MateSearch;
}

// Whether the result can't get better: a mate within the depth searched, or the mate that was asked for.
bool HasFoundMate(int depth) {
    if (MateSearch > 0) return HasFoundSoughtMate();
    return std::abs(RootScore) > MATE + 1 - depth;
}

// A mate search that has not found its mate has bounds only.
bool HasExactScore() {
    return MateSearch <= 0 || HasFoundSoughtMate();
}

void RunIteration(int depth) {
    IterationDepth = depth;
    MaxPlyReached = depth + 1;
    if (depth >= 4) PollCountdown = -1;
    ++Nodes;
    --PollCountdown;
    if (NodeLimit > 0 && Nodes >= NodeLimit) StopRequested = LIMIT_REACHED;
    SetMaterialWindow();
    CurrentRootMove = 0;
    if (UciMode && Nodes > 200000) PrintUciInfo(1, BOUND_NONE, 0);
    if (MultiPvCount > 1) {
        SearchLines();
    } else {
        SearchMoves();
    }
    if (StopRequested || !HasExactScore()) return;
    HashStore(depth * PLY_DEPTH + 90, RootMove(0), RootScore, BOUND_EXACT, 0, 0, ROOT_STORE_PLY);
}

// Whether pieces alone hunt a bare king and scores have begun to fade by the fifty-move rule. What earlier
// searches left in the table has faded less: by it every position of the past looks better than progress, and
// the hunt goes in circles.
bool IsTableStale() {
    constexpr uint32_t UNFADED = 8;  // plies without progress
    const bool isHunt = board.Material[WHITE] == 0 || board.Material[BLACK] == 0;
    // A table so large that emptying it takes time off the clock stays as it is.
    constexpr int CHEAP_TO_CLEAR = 1 << 23;  // entries; some hundredths of a second
    return isHunt && !HasPawns() && board.Fifty > UNFADED && HashEntries <= CHEAP_TO_CLEAR;
}

void ResetSearch() {
    AgeHistory();
    RefreshEvalCache();
    ResetKingAttackCounts();
    if (IsTableStale()) ClearHash();
    ++SearchNumber;
    Nodes = 0;
    HashWrites = 0;
    TablebaseHits = 0;
    MaxPlyReached = 0;
    IterationDepth = 0;
    CurrentRootMove = 0;
    EngineSide = board.SideToMove;
    RootGamePly = GamePly();
    SearchedKey = HistoryLength > 0 ? History[HistoryLength - 1].HashKey : board.HashKey;
    Ply = 0;
    PonderMove = NO_MOVE;
    SetPollCountdown();
    PreviousScore = LastScoreToMove();
    const bool isExpected = PositionKey() == ExpectedKey && board.SideToMove == ExpectedSide;
    ExpectedMove = isExpected ? ExpectedAnswer : NO_MOVE;
    ResetReports();
}

// The iterations after which a mate in `moves` counts as disproved. The mate takes 2 * moves - 1 plies, but a
// move that isn't the first costs two plies of depth, one that seems to lose material three and a quiet move
// of a simple ending two more: an ordinary mate is found by 4 * moves iterations, and a mixture of the dearer
// moves some later. They are cheap: the window of the mate ends every line that lasts longer than it.
int CountMateIterations(int moves) {
    return std::min(6 * std::min(moves, DEEPEST_ITERATION) + 8, DEEPEST_ITERATION);
}

void Deepen(int maxDepth) {
    const int lastDepth = MateSearch > 0 ? CountMateIterations(MateSearch) : DEEPEST_ITERATION;
    const int limit = std::min(maxDepth, lastDepth + 1);
    for (int depth = 1; depth < limit && !StopRequested; ++depth) {
        RunIteration(depth);
        if (!StopRequested && HasFoundMate(depth)) break;
    }
    if (!HasExactScore()) std::fill_n(RootScores, RootMoveCount, 0);
    if (UciMode && MultiPvCount > 1 && IterationDepth > 0) PrintLines();
}

}  // namespace

int IterativeDeepening(int maxDepth, int useBook) {
    ResetSearch();
    if (AnswerFromBook(useBook)) {
        WaitForInput();
        GameSearches = 0;
        return 0;
    }
    const int isOver = PrepareRoot();
    if (!isOver) {
        const bool isForced = RootMoveCount < 2 && !Analyzing;
        if (!AnswerFromTables() && !isForced) Deepen(maxDepth);
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

bool ContinuesSearchedGame() {
    const auto isIt = [](const HistoryRecord& record) { return record.HashKey == SearchedKey; };
    return board.HashKey == SearchedKey || std::any_of(History, History + HistoryLength, isIt);
}

void ResetRootMemory() {
    LastScore = 0;
    LastScoreSide = WHITE;
    PreviousScore = 0;
    ExpectedAnswer = NO_MOVE;
    GameSearches = 0;
}
