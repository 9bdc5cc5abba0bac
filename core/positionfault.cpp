#include "core/positionfault.h"

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/boardcheck.h"

bool HasPhantomMen() {
    for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
        for (const int side : {WHITE, BLACK}) {
            for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
                const int square = PopLowest(men);
                if (board.PieceOn[square] != piece || !(board.Occupied[side] & SquareBit(square)))
                    return true;
            }
        }
    }
    return false;
}

namespace {

int CountKings(int side) {
    int count = 0;
    for (int square = 0; square < 64; ++square) {
        if (board.PieceOn[square] == KING && (board.Occupied[side] & SquareBit(square))) ++count;
    }
    return count;
}

}  // namespace

const char* FindPositionFault() {
    if (CountKings(WHITE) != 1) return "White must have exactly one king";
    if (CountKings(BLACK) != 1) return "Black must have exactly one king";
    const Bitboard pawns = board.Pieces[PAWN][WHITE] | board.Pieces[PAWN][BLACK];
    if (pawns & (RANK_1 | RANK_8)) return "a pawn stands on the first or last rank";
    for (const int side : {WHITE, BLACK}) {
        if (board.PieceNumber[PAWN][side] > 8) return "a side has more than eight pawns";
        if (CountSquares(board.Occupied[side]) > 16) return "a side has more than sixteen men";
    }
    if (!IsBoardExact()) return "men were taken off without clearing the board";
    if (IsKingAttacked(ChangeSide(board.SideToMove))) return "the side not to move is in check";
    const Move last = LastMove();
    const Bitboard way = SquareBit(MoveFrom(last)) | SquareBit((MoveFrom(last) + MoveTo(last)) / 2);
    if (IsDoubleStep(last) && (way & AllOccupied())) return "no pawn can have made the double step";
    return nullptr;
}
