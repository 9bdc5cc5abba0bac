#include <algorithm>

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/checks.h"
#include "core/evasions.h"
#include "core/exchange.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movelist.h"
#include "core/movetest.h"
#include "search/draws.h"
#include "search/futility.h"
#include "search/modes.h"
#include "search/node.h"
#include "search/ordering.h"
#include "search/parameters.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/prefetch.h"
#include "search/root.h"
#include "search/search.h"
#include "search/statistics.h"
#include "search/transposition.h"

namespace {

// What SearchFlags say of a position.
constexpr int NO_QUIET_CHECKS = 1;
constexpr int NO_CAPTURES = 2;

constexpr int CHECK_DEPTH = -120;  // the lowest depth with quiet checks
constexpr int OVERLONG = -240;     // the depth of a line that has become too long for them

// A node of the quiescence search.
struct QuietNode {
    int Alpha;
    int Beta;
    int Depth;
    int Type;
    bool IsInCheck;
    int Best;            // the best score so far
    int StandAlpha = 0;  // alpha once standing pat has raised it
    int SearchFlags = 0;
    Move HashMove = NO_MOVE;  // searched first
    NodeEvaluation Eval = {};

    PlyRecord& Record() const { return PlyInfo[Ply]; }
};

// Takes over what the table knows of the node; true, with the score, when that ends it.
bool IsCutOffByTable(QuietNode& node, int* score) {
    Count(STAT_HASH_PROBES);
    const HashEntry* entry = HashProbe();
    if (entry == nullptr) return false;
    Count(STAT_HASH_HITS);
    node.HashMove = HashMove(*entry);
    node.SearchFlags = entry->SearchFlags;
    if (node.Type == 0) return false;
    *score = entry->Score;
    switch (HashBound(*entry)) {
        case BOUND_LOWER:
            if (*score < node.Beta) return false;
            break;
        case BOUND_UPPER:
            if (*score > node.Alpha) return false;
            break;
        case BOUND_EXACT:
            *score = HashScoreAt(*entry, Ply);
            break;
        default:
            *score = node.Alpha;
            break;
    }
    Count(STAT_HASH_CUTOFFS);
    node.Record().BestMove = node.HashMove;
    return true;
}

void StoreNode(const QuietNode& node, Move move, int score, int bound) {
    HashStore(0, move, std::min(score, MATE_BOUND), bound, 0, node.SearchFlags, Ply);
}

// Ends a node that a move has cut off.
int CutOff(const QuietNode& node, Move move, int score) {
    StoreNode(node, move, score, BOUND_LOWER);
    node.Record().BestMove = move;
    return score;
}

// Ends a node that has seen all its moves.
int Finish(const QuietNode& node, Move bestMove) {
    if (node.Alpha > node.StandAlpha) {
        StoreNode(node, bestMove, node.Best, BOUND_EXACT);
        node.Record().BestMove = bestMove;
    }
    return node.Best;
}

// Whether the enemy king has fewer than three squares to flee to.
bool IsBoxedIn(const QuietNode& node) {
    if (node.Eval.IsLazy) return false;
    const int us = board.SideToMove, them = ChangeSide(us);
    const Bitboard flights = KingTargets[board.KingSquare[them]] & ~board.Occupied[them];
    return CountSquares(flights & ~node.Eval.Attacked[us]) < 3;
}

// Whether quiet checks could bring the evaluation to alpha.
bool AreChecksPromising(const QuietNode& node) {
    constexpr int DepthMargin[] = {50, 150, 250, 700};
    constexpr int AttackMargin[] = {-10, -10, 10, 50, 250};
    const int depthMargin = DepthMargin[std::min(3, node.Depth / PLY_DEPTH + 2)];
    const int attackMargin = AttackMargin[std::min(4, KingAttackCount[board.SideToMove])];
    return node.Eval.Score + depthMargin + attackMargin > node.Alpha;
}

// Whether the side to move has given check with each of its last moves. Checks and their replies cost
// no depth between them, so that without an end to them a queen chases a king through millions of nodes.
bool IsChase() {
    if (Ply <= 2 * ChaseChecks) return false;
    for (int back = 1; back <= ChaseChecks; ++back) {
        if (!PlyInfo[Ply - 2 * back].GivesCheck) return false;
    }
    return true;
}

// Whether the node tries quiet checks.
bool WantsQuietChecks(const QuietNode& node) {
    if ((node.SearchFlags & NO_QUIET_CHECKS) || IsChase()) return false;
    if (node.Depth >= CHECK_DEPTH && (node.Type == 0 || AreChecksPromising(node))) return true;
    // A king that is boxed in is worth checks anywhere, but not at every move of a line.
    if (Ply < 2 || (PlyInfo[Ply - 2].Flags & FLAG_BOXED_KING) || !IsBoxedIn(node)) return false;
    node.Record().Flags |= FLAG_BOXED_KING;
    Count(STAT_BOXED_KINGS);
    return true;
}

// Searches a move; the result is from its mover's view.
int SearchMove(const QuietNode& node, Move move, bool givesCheck, int depth) {
    node.Record().GivesCheck = givesCheck;
    MakeMove(move, 1);
    PlyInfo[++Ply].InCheck = givesCheck;
    const int score = -Quiesce(-node.Beta, -node.Alpha, depth, -node.Type);
    --Ply;
    UnmakeMove();
    return score;
}

// Whether the replies in the list show a check to be harmless: two king moves or captures, or one move that
// loses nothing.
bool IsHarmlessCheck(int start) {
    int solid = 0;
    for (int i = start; i < MoveListTop; ++i) {
        const Move move = MoveList[i].Move;
        if (MovePiece(move) == KING || MoveCaptured(move) != EMPTY) ++solid;
        if (solid >= 2 || IsSafeMove(move)) return true;
    }
    return false;
}

// Whether the check comes from a quiet move that was tried only because this king is boxed in.
bool IsBoxedKingCheck() {
    return Ply >= 1 && (PlyInfo[Ply - 1].Flags & FLAG_BOXED_KING) && IsQuiet(LastMove());
}

bool IsFutileCapture(const QuietNode& node, Move move, int order) {
    const unsigned promotion = MovePromotion(move);
    if (promotion != EMPTY && promotion != QUEEN) return true;
    // A capture that neither the exchange test nor its own record speaks for loses the man.
    return IsFutile(EstimateGain(move, order < 0), node.Alpha, node.Eval);
}

// Takes a score into the node; true when it cuts the node off.
bool TakeScore(QuietNode& node, Move move, int score, Move& bestMove) {
    if (score <= node.Best) return false;
    node.Best = score;
    if (score <= node.Alpha) return false;
    bestMove = move;
    node.Alpha = score;
    return score >= node.Beta;
}

// The moves in the list from `start` on: replies to a check, or captures and promotions. True when one cuts
// the node off or the search has been stopped.
bool SearchForcing(QuietNode& node, int start, Move& bestMove) {
    const bool followsCapture = MoveCaptured(LastMove()) != EMPTY;
    const int end = MoveListTop;
    for (int i = start; i < end; ++i) {
        SelectBestMove(i, end);
        const auto [move, order] = MoveList[i];
        if (move == node.HashMove) continue;
        if (!IsLegalCandidate(move, node.IsInCheck)) continue;
        PrefetchNode(move);
        const bool givesCheck = GivesCheck(move);
        if (!node.IsInCheck && !givesCheck && node.Type != 0 && IsFutileCapture(node, move, order)) {
            Count(STAT_QUIESCE_FUTILE);
            continue;
        }
        const int oldAlpha = node.Alpha;
        const int score = SearchMove(node, move, givesCheck, node.Depth - PLY_DEPTH);
        if (StopRequested) return true;
        if (followsCapture && !node.IsInCheck && !givesCheck) UpdateRecapture(move, order, score > oldAlpha);
        if (TakeScore(node, move, score, bestMove)) return true;
    }
    return false;
}

bool SearchQuietChecks(QuietNode& node, Move& bestMove) {
    const int start = MoveListTop;
    if (GenerateQuietChecks(node.Eval.Score + 100 >= node.Alpha) == 0) node.SearchFlags |= NO_QUIET_CHECKS;
    const int end = MoveListTop;
    for (int i = start; i < end; ++i) {
        SelectBestMove(i, end);
        const Move move = MoveList[i].Move;
        if (move == node.HashMove || !KeepsKingSafe(move)) continue;
        PrefetchNode(move);
        Count(STAT_QUIET_CHECKS);
        const int score = SearchMove(node, move, true, node.Depth - PLY_DEPTH);
        if (StopRequested || TakeScore(node, move, score, bestMove)) return true;
    }
    return false;
}

// Keeps the table's move only when this node would search it.
void CheckHashMove(QuietNode& node, bool wantsChecks) {
    node.HashMove = VerifiedMove(node.HashMove, node.IsInCheck);
    if (node.HashMove == NO_MOVE || node.IsInCheck) return;
    const bool isQuiet = TakesNothing(node.HashMove);
    if ((isQuiet && !(wantsChecks && GivesCheck(node.HashMove))) || !KeepsKingSafe(node.HashMove))
        node.HashMove = NO_MOVE;
}

// Evaluates the node and stands pat; true, with the score, when that ends it.
bool IsCutOffByStanding(QuietNode& node, int* score) {
    EvaluateNode(&node.Eval);
    *score = node.Eval.Score;
    node.Best = std::max(node.Best, *score);
    if (*score >= node.Beta && *score > node.Alpha) return true;
    node.Alpha = std::max(node.Alpha, *score);
    return false;
}

// Searches the moves of a node; `wantsChecks` says whether quiet checks are among them.
int SearchAll(QuietNode& node, bool wantsChecks) {
    Move bestMove = NO_MOVE;
    // 1. The table's move, half a ply cheaper than others, deliberately.
    if (node.HashMove != NO_MOVE) {
        PrefetchNode(node.HashMove);
        const int score =
            SearchMove(node, node.HashMove, GivesCheck(node.HashMove), node.Depth - PLY_DEPTH / 2);
        if (StopRequested) return 0;
        if (TakeScore(node, node.HashMove, score, bestMove)) return CutOff(node, bestMove, score);
    }
    // 2. Replies to a check, or captures and promotions.
    const int start = MoveListTop;
    if (node.IsInCheck) {
        GenerateEvasions();
        if (MoveListTop == start) return Ply - MATE;
        if (MoveListTop == start + 1) node.Depth += PLY_DEPTH;
        if (IsBoxedKingCheck() && IsHarmlessCheck(start)) {
            Count(STAT_HARMLESS_CHECKS);
            return node.Beta;
        }
    } else if (!(node.SearchFlags & NO_CAPTURES)) {
        GenerateCaptures(board.Occupied[ChangeSide(board.SideToMove)]);
        GenerateQueenKnightPromotions();
        if (MoveListTop == start) node.SearchFlags |= NO_CAPTURES;
    }
    const bool isCutOff =
        SearchForcing(node, start, bestMove) || (wantsChecks && SearchQuietChecks(node, bestMove));
    if (StopRequested) return 0;
    return isCutOff ? CutOff(node, bestMove, node.Best) : Finish(node, bestMove);
}

}  // namespace

int Quiesce(int alpha, int beta, int depth, int nodeType) {
    PlyRecord& record = PlyInfo[Ply];
    QuietNode node{alpha, beta, depth, nodeType, record.InCheck != 0, 0};
    int score = 0;
    // 1. Count the node; look at clock and input now and then.
    MaxPlyReached = std::max(MaxPlyReached, Ply);
    ++Nodes;
    Count(STAT_QUIESCE_NODES);
    record.BestMove = NO_MOVE;
    record.Flags = 0;
    if (--PollCountdown < 0) CheckTime();
    if (StopRequested) return 0;
    // 2. Bounds that no line from here can pass, draws, lines that have become too long.
    node.Best = node.IsInCheck ? Ply - MATE : Ply - (MATE - 2);
    if (node.Best >= beta && node.Best > alpha) return node.Best;
    node.Alpha = std::max(alpha, node.Best);
    if (MATE - 1 - Ply <= node.Alpha) return node.Alpha;
    if (IsDraw()) return DrawScoreToMove();
    if (Ply >= MAX_PLY || !HasMoveListRoom()) {
        EvaluateNode(&node.Eval);
        return node.Eval.Score;
    }
    if (Ply > std::min(2 * IterationDepth + 36, 90)) node.Depth = OVERLONG;
    // 3. What ends the node without a look at its moves.
    if (!node.IsInCheck && CutsOffByMaterial(beta, &score)) {
        Count(STAT_LAZY_CUTOFFS);
        return score;
    }
    if (IsCutOffByTable(node, &score)) return score;
    bool wantsChecks = false;
    if (node.IsInCheck) {
        node.Depth += PLY_DEPTH;
    } else {
        if (IsCutOffByStanding(node, &score)) return score;
        wantsChecks = WantsQuietChecks(node);
    }
    // 4. The moves.
    CheckHashMove(node, wantsChecks);
    node.StandAlpha = node.Alpha;
    const int start = MoveListTop;
    score = SearchAll(node, wantsChecks);
    MoveListTop = start;
    return StopRequested ? 0 : score;
}
