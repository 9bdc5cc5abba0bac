#include <algorithm>

#include "eval/endings.h"
#include "eval/evaluate.h"
#include "eval/fewpawns.h"
#include "eval/materialtable.h"
#include "eval/mating.h"
#include "eval/pieceendings.h"

namespace {

constexpr int SURE_WIN_LIMIT = 20000;  // only boards set up by hand get there

void SetNoWinFlags() {
    const MaterialEntry material = CurrentMaterial();
    for (const int side : {WHITE, BLACK}) {
        const bool hasTooLittle = (material.Flags[side] & MATERIAL_CANNOT_WIN) != 0;
        eval_info.cannot_win[side] = hasTooLittle || IsCornerHeld(EndingView(side));
    }
}

// The single piece of the strong side against a single pawn.
int PieceAgainstPawn(const EndingView& view) {
    switch (view.Units(view.Strong)) {
        case PieceUnits[QUEEN]:
            return view.Count(QUEEN, view.Strong) == 1 ? QueenAgainstPawn(view) : UNKNOWN_ENDING;
        case PieceUnits[ROOK]:
            return RookAgainstPawn(view);
        case PieceUnits[KNIGHT]:
            return MinorAgainstPawn(view);
        default:
            return UNKNOWN_ENDING;
    }
}

int EndingScore(const EndingView& view) {
    const int strongPawns = view.Count(PAWN, view.Strong), weakPawns = view.Count(PAWN, view.Weak);
    if (view.IsWeakBare()) return BareKingScore(view);
    if (strongPawns == 0 && weakPawns == 0) return PieceEndingScore(view);
    if (strongPawns == 0 && weakPawns == 1 && view.Units(view.Weak) == 0) return PieceAgainstPawn(view);
    return UNKNOWN_ENDING;
}

}  // namespace

bool EvaluateLowMaterial(int* result) {
    SetNoWinFlags();
    const EndingView view(LeaderOf(board.Material[BLACK] - board.Material[WHITE]));
    const int score = EndingScore(view);
    if (score == UNKNOWN_ENDING) return false;
    const int bounded = std::clamp(score, -SURE_WIN_LIMIT, SURE_WIN_LIMIT);
    *result = view.IsStrongToMove ? bounded : -bounded;
    return true;
}
