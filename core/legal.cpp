#include "core/legal.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/makemove.h"
#include "core/movegen.h"

namespace {

// Whether some generated move passes the test; leaves the move list as it was.
template <typename Test>
bool AnyGeneratedMove(Test test) {
    const int start = MoveListTop;
    GenerateMoves();
    const bool result = std::any_of(MoveList + start, MoveList + MoveListTop,
                                    [&](const ScoredMove& entry) { return test(entry.Move); });
    MoveListTop = start;
    return result;
}

}  // namespace

bool LeavesKingSafe(Move move) {
    const int mover = board.SideToMove;
    MakeMove(move, 1);
    const bool isSafe = !IsKingAttacked(mover);
    UnmakeMove();
    return isSafe;
}

bool IsLegalMove(Move move) {
    return AnyGeneratedMove([=](Move other) { return other == move && LeavesKingSafe(move); });
}

void GenerateMoves() {
    if (!HasMoveListRoom()) return;
    const int start = MoveListTop;
    const bool hasKing = board.Pieces[KING][board.SideToMove] != 0;
    if (hasKing && IsKingAttacked(board.SideToMove)) {
        GenerateEvasions();
    } else {
        GenerateAllStages();
    }
    const auto end = std::remove_if(MoveList + start, MoveList + MoveListTop,
                                    [](const ScoredMove& entry) { return MoveCaptured(entry.Move) == KING; });
    MoveListTop = static_cast<int>(end - MoveList);
}
