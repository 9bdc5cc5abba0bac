#include "search/reduction.h"

#include "core/board.h"
#include "core/movescore.h"
#include "search/picker.h"
#include "search/scores.h"
#include "search/timecontrol.h"

namespace {

// The counts were found by games and by comparing the moves chosen in two thousand positions.
constexpr int EARLY_MOVES = 2, DOUBTFUL_MOVES = 6, MIDDLE_MOVES = 12, LATE_MOVES = 24;

// Whether the quiet move has cut off anywhere of late.
bool HasHistory(Move move) {
    const int side = board.SideToMove;
    return HistoryCounter(move, 0, side) != 0 || HistoryCounter(move, 1, side) != 0;
}

}  // namespace

int LateReduction(const Node& node, const Candidate& candidate, int moveCount) {
    const Move move = candidate.Move;
    // The window of a mate search is all the saving that it needs.
    if (MateSearch > 0) return 0;
    if (moveCount <= EARLY_MOVES || node.Type == 0 || node.Depth < 2 * PLY_DEPTH || node.IsInCheck) return 0;
    if (candidate.GivesCheck || !TakesNothing(move) || IsKillerScore(candidate.Score)) return 0;
    if (moveCount > LATE_MOVES || (moveCount > DOUBTFUL_MOVES && !HasHistory(move))) return 3 * PLY_DEPTH;
    return moveCount > MIDDLE_MOVES ? 2 * PLY_DEPTH : PLY_DEPTH;
}
