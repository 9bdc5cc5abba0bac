#include "search/node.h"

#include "core/legal.h"
#include "core/movetest.h"

bool IsLegalCandidate(Move move, bool isInCheck) {
    // Replies to a check are legal as they come, but for an en-passant capture that opens a line.
    if (isInCheck) return !IsEnPassant(move) || LeavesKingSafe(move);
    return KeepsKingSafe(move);
}

Move VerifiedMove(Move move, bool isInCheck) {
    if (move == NO_MOVE || !IsPossible(move)) return NO_MOVE;
    if (isInCheck && (IsCastling(move) || !LeavesKingSafe(move))) return NO_MOVE;
    return move;
}
