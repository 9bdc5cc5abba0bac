#include "search/aspiration.h"

#include <algorithm>

#include "core/makemove.h"
#include "search/modes.h"
#include "search/plyinfo.h"
#include "search/root.h"
#include "search/search.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

constexpr int WIDE_WIDTH = 120;
constexpr int CHECK_DEPTH = 90;  // beyond the plies of the iteration
constexpr int OTHER_DEPTH = 30;

// Searches the position behind a root move that has been made, from the view of the side to move. A mate
// search asks one question only: whether this side is mated in time.
int SearchRootMove(int alpha, int beta, int depth) {
    const bool seeksMate = MateSearch > 0;
    alpha = std::max(alpha, seeksMate ? 2 * MateSearch - MATE : -MATE - 1);
    beta = std::min(beta, seeksMate ? 2 * MateSearch - MATE + 1 : MATE + 1);
    // A window that doesn't hold the question is passed unsearched, up to one that does.
    if (alpha >= beta) return alpha;
    return Search(alpha, beta, depth, 1, beta == alpha + 1 ? -1 : 0);
}

int SearchBelow(int i, int score, ScoreTaker take) {
    int again = 0;
    if (score - WIDE_WIDTH < -MATE + 1) {
        again = SearchRootEntry(i, -MATE, score);
    } else {
        const int bottom = score - WIDE_WIDTH;
        again = SearchRootEntry(i, bottom, score);
        if (!StopRequested && again <= bottom) {
            const int bound = again;
            // The open window comes before the report of the bound that made it due, deliberately.
            again = SearchRootEntry(i, -MATE - 1, bound);
            if (!StopRequested) i = take(i, bound, BOUND_UPPER);
        }
    }
    return StopRequested ? i : take(i, again, BOUND_NONE);
}

}  // namespace

int SearchRootEntry(int i, int alpha, int beta) {
    const int depth = IterationDepth * PLY_DEPTH + (RootGivesCheck[i] ? CHECK_DEPTH : OTHER_DEPTH);
    MakeMove(MoveList[i].Move, 1);
    PlyInfo[0].GivesCheck = PlyInfo[1].InCheck = RootGivesCheck[i];
    Ply = 1;
    const int score = -SearchRootMove(-beta, -alpha, depth);
    Ply = 0;
    UnmakeMove();
    return score;
}

int SearchAround(int i, ScoreTaker take) {
    const int low = RootScores[i] - NARROW_WIDTH, high = RootScores[i] + NARROW_WIDTH;
    const int score = SearchRootEntry(i, std::max(low, -MATE), std::min(high, MATE));
    if (StopRequested) return i;
    if (score >= high) return SearchAbove(take(i, score, BOUND_LOWER), score, WIDE_WIDTH, take);
    if (score <= low) return SearchBelow(take(i, score, BOUND_UPPER), score, take);
    return take(i, score, BOUND_NONE);
}

int SearchAbove(int i, int score, int width, ScoreTaker take) {
    int again = 0;
    if (score + width >= MATE) {
        again = SearchRootEntry(i, score, MATE);
    } else {
        again = SearchRootEntry(i, score, score + width);
        if (!StopRequested && again >= score + width) {
            i = take(i, again, BOUND_LOWER);
            again = SearchRootEntry(i, again, MATE);
        }
    }
    return StopRequested ? i : take(i, again, BOUND_NONE);
}
