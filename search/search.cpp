#include "search/search.h"

#include <algorithm>
#include <climits>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "eval/evaluate.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/ordering.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/root.h"
#include "search/transposition.h"

int64_t Nodes = 0;
int MaxPlyReached = 0;
int TablebaseHits = 0;

namespace {

constexpr int CHECK_EXTENSION = PLY_DEPTH;
// Ordering scores of quiet moves end at 32700; captures that lose nothing begin at 100000.
constexpr int HASH_MOVE_SCORE = INT_MAX;
constexpr int KILLER_SCORE = 50000;

// The score that ends the node at once because of the entry, if it does.
bool CutsOff(const HashEntry& entry, int alpha, int beta, int depth, int& score) {
    if (entry.Depth < depth) return false;
    score = HashScoreAt(entry, Ply);
    switch (HashBound(entry)) {
        case BOUND_EXACT:
            return true;
        case BOUND_LOWER:
            return score >= beta;
        case BOUND_UPPER:
            return score <= alpha;
        default:
            return false;
    }
}

// Generates the node's moves and lifts the table's move and the killers in their order.
void GenerateOrdered(Move hashMove) {
    const int start = MoveListTop;
    const PlyRecord& record = PlyInfo[Ply];
    if (record.InCheck) {
        GenerateEvasions();
    } else {
        GenerateAllStages();
    }
    const int side = board.SideToMove;
    for (int i = start; i < MoveListTop; ++i) {
        ScoredMove& entry = MoveList[i];
        if (entry.Move == hashMove) {
            entry.Score = HASH_MOVE_SCORE;
        } else if (!record.InCheck && entry.Move == record.Killer1[side]) {
            entry.Score = KILLER_SCORE + 1;
        } else if (!record.InCheck && entry.Move == record.Killer2[side]) {
            entry.Score = KILLER_SCORE;
        }
    }
}

int SearchChild(int alpha, int beta, int depth, int nodeType) {
    return depth >= PLY_DEPTH ? Search(alpha, beta, depth, 1, nodeType) : Quiesce(alpha, beta, 0, nodeType);
}

// Searches a move that has been made, the first with the full window, later ones with a null window first.
int SearchMove(int alpha, int beta, int depth, int nodeType, bool isFirst) {
    if (isFirst) return -SearchChild(-beta, -alpha, depth, -nodeType);
    const int score = -SearchChild(-alpha - 1, -alpha, depth, nodeType == 0 ? 1 : -nodeType);
    if (score <= alpha || score >= beta || StopRequested) return score;
    return -SearchChild(-beta, -alpha, depth, -nodeType);
}

}  // namespace

// No null move is tried yet, so whether one is allowed does not matter.
int Search(int alpha, int beta, int depth, int /*nullAllowed*/, int nodeType) {
    PlyRecord& record = PlyInfo[Ply];
    // 1. Count the node; look at clock and input now and then.
    ++Nodes;
    record.BestMove = NO_MOVE;
    MaxPlyReached = std::max(MaxPlyReached, Ply);
    if (--PollCountdown < 0) CheckTime();
    if (StopRequested) return 0;

    // 2. Bounds that no line from here can pass, draws, the end of the records.
    alpha = std::max(alpha, record.InCheck ? Ply - MATE : Ply - (MATE - 2));
    beta = std::min(beta, MATE - 1 - Ply);
    if (alpha >= beta) return alpha;
    if (IsDraw()) return DrawScoreToMove();
    if (Ply >= MAX_PLY || !HasMoveListRoom()) {
        int score = 0;
        Evaluate(&score);
        return score;
    }

    // 3. What the table knows.
    Move hashMove = NO_MOVE;
    if (const HashEntry* entry = HashProbe()) {
        hashMove = HashMove(*entry);
        int score = 0;
        if (nodeType != 0 && CutsOff(*entry, alpha, beta, depth, score)) {
            record.BestMove = hashMove;
            return score;
        }
    }

    // 4. The moves, best first.
    const int start = MoveListTop, side = board.SideToMove, oldAlpha = alpha;
    int best = -MATE, moveCount = 0;
    GenerateOrdered(hashMove);
    for (int i = start; i < MoveListTop; ++i) {
        SelectBestMove(i);
        const Move move = MoveList[i].Move;
        MakeMove(move, moveCount == 0);
        if (IsKingAttacked(side)) {
            UnmakeMove();
            continue;
        }
        const bool givesCheck = IsKingAttacked(board.SideToMove);
        PlyInfo[Ply + 1].InCheck = givesCheck;
        const int extension = givesCheck && Ply < 2 * IterationDepth + 2 ? CHECK_EXTENSION : 0;
        ++Ply;
        const int score = SearchMove(alpha, beta, depth - PLY_DEPTH + extension, nodeType, moveCount == 0);
        --Ply;
        UnmakeMove();
        if (StopRequested) {
            MoveListTop = start;
            return 0;
        }
        ++moveCount;
        if (score <= best) continue;
        best = score;
        if (score <= alpha) continue;
        alpha = score;
        record.BestMove = move;
        if (score >= beta) break;
    }
    MoveListTop = start;

    // 5. The result.
    if (moveCount == 0) return record.InCheck ? Ply - MATE : DrawScoreToMove();
    const Move bestMove = record.BestMove;
    if (best >= beta) {
        if (IsQuiet(bestMove) && !IsEnPassant(bestMove)) UpdateHistory(depth, bestMove, 0);
        HashStore(depth, bestMove, best, BOUND_LOWER, 0, 0, Ply);
    } else {
        HashStore(depth, bestMove, best, alpha > oldAlpha ? BOUND_EXACT : BOUND_UPPER, 0, 0, Ply);
    }
    return best;
}
