#include "search/reduction.h"

#include <algorithm>

#include "core/board.h"
#include "core/movescore.h"
#include "search/parameters.h"
#include "search/picker.h"
#include "search/scores.h"
#include "search/timecontrol.h"

namespace {

// Whether the quiet move has cut off anywhere of late.
bool HasHistory(Move move) {
    const int side = board.SideToMove;
    return std::max(HistoryCounter(move, 0, side), HistoryCounter(move, 1, side)) > LittleHistory;
}

}  // namespace

int LateReduction(const Node& node, const Candidate& candidate, int moveCount) {
    const Move move = candidate.Move;
    // The window of a mate search is all the saving that it needs.
    if (MateSearch > 0) return 0;
    if (moveCount <= EarlyMoves || node.Type == 0 || node.Depth < ReductionDepth || node.IsInCheck) return 0;
    if (candidate.GivesCheck || !TakesNothing(move) || IsKillerScore(candidate.Score)) return 0;
    if (moveCount > LateMoves || (moveCount > DoubtfulMoves && !HasHistory(move))) return DoubtfulReduction;
    return moveCount > MiddleMoves ? MiddleReduction : EarlyReduction;
}
