#include "search/nodeeval.h"

#include <algorithm>

#include "core/bitboard.h"
#include "core/board.h"
#include "eval/evaluate.h"
#include "search/evalcache.h"
#include "search/materialwindow.h"
#include "search/statistics.h"

namespace {

// Whether a side has enough pieces for its material to decide: a lone queen or a minor piece may well be held
// or lost.
bool HasDecidingPieces(int side) {
    const uint32_t units = board.PieceMaterial[side];
    return units >= 6 && (CountPieces(side) >= 2 || units > 9);
}

// Centipawns for a side's pawn that is about to promote.
int PawnHope(int side) {
    const Bitboard pawns = board.Pieces[PAWN][side];
    if (pawns & RelativeRankBits(side, 6)) return 100;
    return pawns & RelativeRankBits(side, 5) ? 50 : 0;
}

struct MaterialVerdict {
    int Score;       // the side to move's material balance, corrected
    bool IsOutside;  // of the window
};

MaterialVerdict JudgeMaterial() {
    const int us = board.SideToMove, them = ChangeSide(us);
    const int low = us == EngineSide ? MaterialLow : -MaterialHigh;
    const int high = us == EngineSide ? MaterialHigh : -MaterialLow;
    const int balance = board.Material[us] - board.Material[them];
    if (balance < low && HasDecidingPieces(them)) {
        const int score = balance + PawnHope(us);
        return {score, score < low};
    }
    if (balance > high && HasDecidingPieces(us)) {
        const int score = balance - PawnHope(them);
        return {score, score > high};
    }
    return {balance, false};
}

// Scores fade from the ninth ply without progress on.
int FadedByFifty(int score) {
    const int idle = std::max(0, static_cast<int>(board.Fifty) - 8);
    return score * 2 * (128 - idle) / 256;
}

}  // namespace

bool CutsOffByMaterial(int beta, int* score) {
    const MaterialVerdict verdict = JudgeMaterial();
    *score = verdict.Score;
    return verdict.IsOutside && verdict.Score >= beta;
}

void EvaluateNode(NodeEvaluation* evaluation) {
    Count(STAT_EVALUATIONS);
    const MaterialVerdict verdict = JudgeMaterial();
    if (verdict.IsOutside) {
        Count(STAT_LAZY_EVALUATIONS);
        *evaluation = NodeEvaluation{};
        evaluation->Score = FadedByFifty(verdict.Score);
        evaluation->IsLazy = true;
        return;
    }
    const EvalCacheEntry& entry = CachedEvaluation();
    const int us = board.SideToMove;
    evaluation->Score = FadedByFifty(entry.Score[us]);
    evaluation->PawnStructure = us == BLACK ? entry.PawnStructure : -entry.PawnStructure;
    for (const int side : {WHITE, BLACK}) {
        evaluation->Attacked[side] = entry.Attacked[side];
        evaluation->Optimism[side] = FadedByFifty(entry.Optimism[side]);
    }
    evaluation->IsLazy = false;
}
