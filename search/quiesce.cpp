#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "eval/evaluate.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/search.h"

int Quiesce(int alpha, int beta, int depth, int nodeType) {
    PlyRecord& record = PlyInfo[Ply];
    ++Nodes;
    record.BestMove = NO_MOVE;
    MaxPlyReached = std::max(MaxPlyReached, Ply);
    if (--PollCountdown < 0) CheckTime();
    if (StopRequested) return 0;
    if (IsDraw()) return DrawScoreToMove();

    // 1. Stand pat, unless in check.
    const int start = MoveListTop, side = board.SideToMove;
    int best = Ply - MATE;
    const bool isAtEnd = Ply >= MAX_PLY || !HasMoveListRoom();
    if (!record.InCheck || isAtEnd) {
        Evaluate(&best);
        if (best >= beta || isAtEnd) return best;
        alpha = std::max(alpha, best);
        GenerateCaptures(board.Occupied[ChangeSide(side)]);
        GenerateQueenKnightPromotions();
    } else {
        GenerateEvasions();
    }

    // 2. Captures and promotions that don't lose material, or all replies to a check.
    bool isSaved = false;
    for (int i = start; i < MoveListTop; ++i) {
        SelectBestMove(i);
        const Move move = MoveList[i].Move;
        if (!record.InCheck && MoveList[i].Score < 0) break;
        MakeMove(move, !isSaved);
        isSaved = true;
        if (IsKingAttacked(side)) {
            UnmakeMove();
            continue;
        }
        PlyInfo[Ply + 1].InCheck = IsKingAttacked(board.SideToMove);
        ++Ply;
        const int score = -Quiesce(-beta, -alpha, depth - PLY_DEPTH, -nodeType);
        --Ply;
        UnmakeMove();
        if (StopRequested) break;
        if (score <= best) continue;
        best = score;
        if (score <= alpha) continue;
        alpha = score;
        record.BestMove = move;
        if (score >= beta) break;
    }
    MoveListTop = start;
    return StopRequested ? 0 : best;
}
