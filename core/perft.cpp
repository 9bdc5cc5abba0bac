#include "core/perft.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/makemove.h"
#include "core/movegen.h"

namespace {

uint32_t LeafMoves = 0;  // of the walk under way; unsigned, so that it may wrap

bool HasKingCapture(int first) {
    return std::any_of(MoveList + first, MoveList + MoveListTop,
                       [](const ScoredMove& entry) { return MoveCaptured(entry.Move) == KING; });
}

template <int side>
void WalkTree(int depth) {
    if (!HasMoveListRoom()) return;
    const int start = MoveListTop;
    GenerateCaptures(board.Occupied[side ^ 1]);
    GeneratePromotions();
    if (HasKingCapture(start)) {
        // The move before this one left its king en prise.
        MoveListTop = start;
        return;
    }
    GenerateQuiet(1);
    const int end = MoveListTop;
    for (int i = start; i < end; ++i) {
        MakeMoveOf<side>(MoveList[i].Move, 1);
        if (depth > 1) {
            WalkTree<side ^ 1>(depth - 1);
        } else {
            LeafMoves += !IsSquareAttacked(side ^ 1, static_cast<int>(board.KingSquare[side]));
        }
        UnmakeMoveOf<side>();
    }
    MoveListTop = start;
}

}  // namespace

int Perft(int depth) {
    LeafMoves = 0;
    if (depth >= 1) board.SideToMove == WHITE ? WalkTree<WHITE>(depth) : WalkTree<BLACK>(depth);
    return static_cast<int>(LeafMoves);
}
