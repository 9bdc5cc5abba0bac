#include "search/search.h"

#include <algorithm>
#include <cassert>

#include "core/board.h"
#include "core/boardcheck.h"
#include "core/makemove.h"
#include "core/movescore.h"
#include "core/movetest.h"
#include "search/draws.h"
#include "search/extension.h"
#include "search/futility.h"
#include "search/modes.h"
#include "search/node.h"
#include "search/nullmove.h"
#include "search/oracles.h"
#include "search/ordering.h"
#include "search/parameters.h"
#include "search/picker.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/prefetch.h"
#include "search/prescan.h"
#include "search/reduction.h"
#include "search/root.h"
#include "search/statistics.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

int64_t Nodes = 0;
int MaxPlyReached = 0;
int TablebaseHits = 0;

namespace {

[[maybe_unused]] constexpr int64_t BOARD_CHECK_INTERVAL = 4096;  // nodes
constexpr int SIMPLE_ENDING_REDUCTION = 120;
constexpr int OPTIMISM_GAIN = 25;  // centipawns of king safety that save a move from being reduced

// Draws by rule, and what few pieces make of the node.
bool IsDrawnNode(Node& node, int* score) {
    if (!HasManyPieces()) {
        if (IsEndgameDraw(node.Alpha, node.Beta, score)) return true;
        node.IsSimpleEnding = IsSimpleEnding();
    }
    *score = DrawScoreToMove();
    return IsDraw();
}

// Takes over what the table knows of the node; true, with the score, when that ends it.
bool IsCutOffByTable(Node& node, int* score) {
    Count(STAT_HASH_PROBES);
    const HashEntry* entry = HashProbe();
    if (entry == nullptr) return false;
    Count(STAT_HASH_HITS);
    const int bound = HashBound(*entry);
    if (bound == BOUND_NONE) return false;
    node.HashMove = VerifiedMove(HashMove(*entry), node.IsInCheck);
    node.SearchFlags = entry->SearchFlags;
    node.MateThreat = HashMateThreat(*entry);
    *score = bound == BOUND_EXACT ? HashScoreAt(*entry, Ply) : entry->Score;
    node.ForbidsNull = (bound & BOUND_UPPER) && *score < node.Beta;
    if (entry->Depth < node.Depth || node.Type == 0) return false;
    const bool isCutOff = bound == BOUND_EXACT || (bound == BOUND_LOWER && *score >= node.Beta) ||
                          (bound == BOUND_UPPER && *score <= node.Alpha);
    if (!isCutOff) return false;
    Count(STAT_HASH_CUTOFFS);
    PlyInfo[Ply].BestMove = node.HashMove;
    return true;
}

void StoreNode(const Node& node, Move move, int score, int bound) {
    HashStore(node.Depth, move, score, bound, node.MateThreat, node.SearchFlags, Ply);
}

// Evaluates the node, unless it is in check, and tries what needs no move: the material, the null move.
bool IsCutOffByStanding(Node& node, bool nullAllowed, int* score) {
    if (node.IsInCheck) return false;
    if (CutsOffByMaterial(node.Beta, score)) {
        Count(STAT_LAZY_CUTOFFS);
        return true;
    }
    EvaluateNode(&node.Eval);
    node.Selector = node.Eval.Score + 100 >= node.Alpha;
    if (!nullAllowed || !MayTryNull(node)) return false;
    *score = TryNull(node);
    if (StopRequested) return true;
    if (*score < node.Beta) return false;
    Count(STAT_NULL_CUTOFFS);
    *score = node.Beta;
    StoreNode(node, NO_MOVE, node.Beta, BOUND_LOWER);
    return true;
}

int SearchChild(int alpha, int beta, int depth, int nodeType) {
    return depth >= PLY_DEPTH ? -Search(-beta, -alpha, depth, 1, nodeType)
                              : -Quiesce(-beta, -alpha, 0, nodeType);
}

// Whether the move that has been made speaks so much against the enemy king that it must not be reduced.
bool RaisesOptimism(const Node& node, const Candidate& candidate) {
    if (node.IsInCheck || node.Eval.IsLazy || candidate.GivesCheck) return false;
    const int mover = ChangeSide(board.SideToMove);
    NodeEvaluation after;
    EvaluateNode(&after);
    return after.Optimism[mover] - node.Eval.Optimism[mover] >= OPTIMISM_GAIN;
}

// Whether the move is one that a simple ending looks at less deeply, at whatever depth it is searched.
bool IsSimplified(const Node& node, Move move) {
    return node.IsSimpleEnding && TakesNothing(move);
}

// Whether the move is searched at its whole depth at once: captures that lose nothing or, in check, have
// proved good, the table's move, killers, and what speaks against the enemy king.
bool DeservesWholeDepth(const Node& node, const Candidate& candidate) {
    return candidate.Score >= SAFE_CAPTURE_SCORE || IsKillerScore(candidate.Score) ||
           RaisesOptimism(node, candidate);
}

// Searches a move that has been made: reduced moves at the reduced depth first, all but the first with a null
// window, and what beats alpha as deeply and exactly as it deserves.
int SearchMove(const Node& node, const Candidate& candidate, int change, int alternative) {
    const int wholeDepth = node.Depth - PLY_DEPTH + std::max(change, 0) -
                           (IsSimplified(node, candidate.Move) ? SIMPLE_ENDING_REDUCTION : 0);
    const int childType = node.Type == 0 ? -1 : -node.Type;
    if (candidate.IsFirst)
        return SearchChild(node.Alpha, node.Beta, node.Depth - PLY_DEPTH + change, -node.Type);
    int score = node.Alpha + 1;
    // Right before the quiescence search there is nothing to reduce.
    if (alternative < 0 && wholeDepth >= PLY_DEPTH && !DeservesWholeDepth(node, candidate)) {
        Count(STAT_REDUCED);
        PlyInfo[Ply - 1].Flags |= FLAG_REDUCED;
        score = SearchChild(node.Alpha, node.Alpha + 1, node.Depth - PLY_DEPTH + alternative, childType);
        PlyInfo[Ply - 1].Flags &= ~FLAG_REDUCED;
        if (score <= node.Alpha || StopRequested) return score;
        Count(STAT_RESEARCHED);
    }
    score = SearchChild(node.Alpha, node.Alpha + 1, wholeDepth, childType);
    if (score <= node.Alpha || score >= node.Beta || StopRequested) return score;
    return SearchChild(node.Alpha, node.Beta, wholeDepth, node.Type);
}

// Whether a quiet move behind which, if only at first, little depth is left is futile; its likely score then
// stands for it.
bool IsHopeless(const Node& node, Move move, int* best) {
    const int gain = EstimateGain(move, false);
    if (!IsFutile(gain, node.Alpha, node.Eval)) return false;
    Count(STAT_FUTILE);
    *best = std::max(*best, std::min(node.Alpha, node.Eval.Score + gain));
    return true;
}

void CheckBoard() {
    assert(Nodes % BOARD_CHECK_INTERVAL != 0 || IsBoardExact());
}

}  // namespace

int Search(int alpha, int beta, int depth, int nullAllowed, int nodeType) {
    PlyRecord& record = PlyInfo[Ply];
    Node node{alpha, beta, depth, nodeType, record.InCheck != 0};
    int score = 0;
    // 1. Count the node; look at clock and input now and then.
    ++Nodes;
    Count(STAT_SEARCH_NODES);
    CheckBoard();
    record.BestMove = NO_MOVE;
    record.Flags = 0;
    if (--PollCountdown < 0) CheckTime();
    if (StopRequested) return 0;
    // 2. Bounds that no line from here can pass.
    const int floor = node.IsInCheck ? Ply - MATE : Ply - (MATE - 2);
    if (floor >= beta) return floor;
    node.Alpha = std::max(alpha, floor);
    if (MATE - 1 - Ply <= node.Alpha) return node.Alpha;
    MaxPlyReached = std::max(MaxPlyReached, Ply);
    // 3. What ends the node without a look at its moves.
    if (IsDrawnNode(node, &score)) return score;
    if (Ply >= MAX_PLY || !HasMoveListRoom()) {
        EvaluateNode(&node.Eval);
        return node.Eval.Score;
    }
    if (IsCutOffByTable(node, &score) || ProbeTablebases(node, &score) || ProbeLearned(node, &score))
        return score;
    if (IsCutOffByStanding(node, nullAllowed != 0, &score)) return StopRequested ? 0 : score;
    if (node.HashMove != NO_MOVE) PrefetchNode(node.HashMove);
    node.HasFullExtensions = nodeType == 0 || Ply <= 2 * IterationDepth;

    // 4. A move that is known to be good enough.
    MovePicker picker(node);
    Move move = NO_MOVE;
    if (PreScan(node, picker, &move, &score)) {
        record.BestMove = move;
        return score;
    }

    // 5. The moves.
    const int startAlpha = node.Alpha;
    int best = floor, moveCount = 0;
    Candidate candidate{NO_MOVE, 0, true, false};
    while ((candidate.Move = picker.Next(&candidate.Score)) != NO_MOVE) {
        move = candidate.Move;
        if (!IsLegalCandidate(move, node.IsInCheck)) continue;
        if (move != node.HashMove) PrefetchNode(move);
        candidate.IsFirst = moveCount++ == 0;
        candidate.GivesCheck = GivesCheck(move);
        const bool mayPrune = nodeType != 0 && MateSearch == 0 && !node.IsInCheck && !candidate.GivesCheck &&
                              TakesNothing(move);
        // Nothing extends such a move beyond the ply that it costs.
        const bool isNearEnd = depth - PLY_DEPTH < FutileDepth;
        if (mayPrune && isNearEnd && IsHopeless(node, move, &best)) continue;
        int alternative = 0;
        int change = ComputeExtension(node, candidate, &alternative);
        if (IsSimplified(node, move)) {
            change -= SIMPLE_ENDING_REDUCTION;
            alternative -= SIMPLE_ENDING_REDUCTION;
        }
        alternative -= LateReduction(node, candidate, moveCount);
        const bool isLast = depth - PLY_DEPTH + alternative < FutileDepth;
        if (mayPrune && !isNearEnd && isLast && IsHopeless(node, move, &best)) continue;
        record.GivesCheck = candidate.GivesCheck;
        MakeMove(move, 1);
        PlyInfo[++Ply].InCheck = candidate.GivesCheck;
        score = SearchMove(node, candidate, change, alternative);
        --Ply;
        UnmakeMove();
        if (StopRequested) return 0;
        if (score <= best) continue;
        best = score;
        if (score <= node.Alpha) continue;
        node.Alpha = score;
        record.BestMove = move;
        if (score >= beta) break;
    }

    // 6. The result.
    if (moveCount == 0) return node.IsInCheck ? Ply - MATE : DrawScoreToMove();
    if (best >= beta) {
        Count(STAT_CUTOFFS);
        if (moveCount == 1) Count(STAT_FIRST_CUTOFFS);
        if (node.IsInCheck) {
            RememberCheckReply(record.BestMove);
        } else if (TakesNothing(record.BestMove)) {
            UpdateHistory(depth, record.BestMove, node.Selector);
        }
        StoreNode(node, record.BestMove, best, BOUND_LOWER);
    } else if (node.Alpha > startAlpha) {
        if (node.IsInCheck) RememberCheckReply(record.BestMove);
        StoreNode(node, record.BestMove, best, BOUND_EXACT);
    } else {
        StoreNode(node, NO_MOVE, best, BOUND_UPPER);
    }
    return best;
}
