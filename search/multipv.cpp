#include "search/multipv.h"

#include <algorithm>

#include "search/aspiration.h"
#include "search/materialwindow.h"
#include "search/modes.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/scores.h"
#include "search/search.h"
#include "search/transposition.h"

int MultiPvCount = 1;

namespace {

// Below any score: a line that has not been searched yet.
constexpr int NO_SCORE = -MATE;

int LineCount() {
    return std::min(MultiPvCount, RootMoveCount);
}

// Brings entry i, which becomes a line if it was none, to its place among the lines; returns the place.
int PlaceLine(int i) {
    const int last = LineCount() - 1;
    if (i > last) ShiftRootMove(i, last);
    i = std::min(i, last);
    int place = i;
    while (place > 0 && RootScores[place - 1] < RootScores[i]) --place;
    while (place < last && RootScores[place + 1] > RootScores[i]) ++place;
    ShiftRootMove(i, place);
    return place;
}

int TakeLineScore(int i, int score, int boundType) {
    const int last = LineCount() - 1;
    if (i > last && score <= RootScores[last]) return i;
    RootScores[i] = score;
    CurrentRootMove = i = PlaceLine(i);
    SetMaterialWindow();
    PrintReport(i, boundType);
    return i;
}

int SearchLine(int i) {
    CurrentRootMove = i;
    if (RootScores[i] != NO_SCORE) return SearchAround(i, TakeLineScore);
    const int score = SearchRootEntry(i, -MATE, MATE);
    return StopRequested ? i : TakeLineScore(i, score, BOUND_NONE);
}

int ChallengeLines(int i) {
    CurrentRootMove = i;
    const int worst = RootScores[LineCount() - 1];
    const int score = SearchRootEntry(i, worst, worst + 1);
    if (StopRequested) return i;
    if (score > worst) return SearchAbove(i, score, NARROW_WIDTH, TakeLineScore);
    if (UciMode && i == RootMoveCount - 1) PrintNodeRate();
    return i;
}

}  // namespace

void SearchLines() {
    // Only the first entry has a score to begin with.
    if (IterationDepth == 1) std::fill(RootScores + 1, RootScores + RootMoveCount, NO_SCORE);
    const int lines = LineCount();
    // Every score may change the order of the lines, so their turns are settled beforehand.
    static Move turns[POSITION_MOVES];
    for (int i = 0; i < lines; ++i) turns[i] = RootMove(i);
    for (int i = 0; i < RootMoveCount && !StopRequested; ++i) {
        const int64_t nodesBefore = Nodes;
        const int place = i < lines ? SearchLine(FindRootMove(turns[i])) : ChallengeLines(i);
        RootNodes[place] = Nodes - nodesBefore;
        if (i == lines - 1) SortRootMoves(lines);
    }
}
