#include "search/tableanswer.h"

#include <algorithm>

#include "search/draws.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/oracles.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/scores.h"
#include "search/search.h"
#include "search/tableranking.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

// The value of a move as the search scores it at the root.
int RootScoreOf(TableValue value) {
    if (value == TABLE_DRAW) return DrawScoreToMove();
    return IsWin(value) ? MATE + 1 - 2 * MateMoves(value) : 2 * MateMoves(value) - MATE;
}

std::vector<RankedMove> RankRootMoves() {
    std::vector<Move> moves;
    for (int i = 0; i < RootMoveCount; ++i) moves.push_back(RootMove(i));
    std::vector<RankedMove> ranked = ValueMoves(moves);
    const auto isWin = [](const RankedMove& move) { return IsWin(move.Value); };
    // Which draw it is matters only when a draw is the best.
    if (std::none_of(ranked.begin(), ranked.end(), isWin)) CountTraps(ranked);
    RankMoves(ranked);
    return ranked;
}

}  // namespace

bool AnswerFromTables() {
    if (MateSearch > 0 || !IsWithinTables()) return false;
    const std::vector<RankedMove> ranked = RankRootMoves();
    if (ranked.empty()) return false;
    int place = 0;
    for (const RankedMove& move : ranked) {
        ShiftRootMove(FindRootMove(move.Move), place);
        RootScores[place++] = RootScoreOf(move.Value);
    }
    IterationDepth = 1;
    MaxPlyReached = 2;
    PrintReport(0, BOUND_NONE);
    return true;
}
