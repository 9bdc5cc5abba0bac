#include "search/futility.h"

#include "core/board.h"
#include "core/psqt.h"
#include "eval/materialtable.h"

int EstimateGain(Move move, bool isLost) {
    const int us = board.SideToMove;
    const unsigned piece = MovePiece(move), promotion = MovePromotion(move);
    const PsqEntry& from = PsqTable[PsqIndex(piece, us, MoveFrom(move))];
    const PsqEntry& to = PsqTable[PsqIndex(promotion == EMPTY ? piece : promotion, us, MoveTo(move))];
    const int phase = CurrentMaterial().current_phase;
    int gain = ((to.Opening - from.Opening) * (PHASE_LIMIT - phase) + (to.Ending - from.Ending) * phase) /
               PHASE_LIMIT;
    gain += PieceValue[MoveCaptured(move)];
    if (promotion != EMPTY) gain += PieceValue[promotion] - PieceValue[PAWN];
    if (IsEnPassant(move)) gain += PieceValue[PAWN];
    return isLost ? gain - PieceValue[piece] : gain;
}

// One decision tree, tuned as a whole: its thresholds belong together.
bool IsFutile(int gain, int alpha, const NodeEvaluation& evaluation) {
    const int gap = alpha - gain - evaluation.Score;
    if (gap < 58) return false;
    if (gain >= 478) return gap >= 395;
    if (gap < 113) return false;
    if (board.PieceMaterial[ChangeSide(board.SideToMove)] < 10) return evaluation.Score < -498;
    return gap >= 183 || evaluation.PawnStructure < 26;
}
