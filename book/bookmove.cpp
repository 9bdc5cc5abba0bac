#include "book/bookmove.h"

#include "core/board.h"
#include "core/legal.h"

Move LegalBookMove(int from, int to) {
    if (from < A1 || from > H8 || to < A1 || to > H8) return NO_MOVE;
    const unsigned piece = board.PieceOn[from];
    const bool isPromotion = piece == PAWN && (RankOf(to) == 0 || RankOf(to) == 7);
    const Move move =
        BuildMove(from, to, piece, board.PieceOn[to], isPromotion ? unsigned{QUEEN} : unsigned{EMPTY});
    return IsLegalMove(move) ? move : NO_MOVE;
}
