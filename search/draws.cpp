#include "search/draws.h"

#include "core/board.h"
#include "eval/evaluate.h"

int DrawScore = 0;

namespace {

constexpr uint32_t FIFTY_LIMIT = 100;  // plies

bool IsIrreversible(Move move) {
    return move == NO_MOVE || !IsQuiet(move) || MovePiece(move) == PAWN;
}

}  // namespace

int DrawScoreToMove() {
    return board.SideToMove == EngineSide ? DrawScore : -DrawScore;
}

bool IsRepetition() {
    // Two plies back is another position of this side, so the walk starts four plies back.
    for (int back = 2; back <= HistoryLength; back += 2) {
        const HistoryRecord& earlier = History[HistoryLength - back];
        if (IsIrreversible(earlier.Move) || IsIrreversible(History[HistoryLength - back + 1].Move))
            return false;
        if (back >= 4 && earlier.HashKey == board.HashKey) return true;
    }
    return false;
}

bool IsDraw() {
    return board.Fifty >= FIFTY_LIMIT || IsRepetition();
}
