#include "core/positionfault.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"

bool IsBoardConsistent() {
    const Board actual = board;
    if ((actual.Occupied[WHITE] & actual.Occupied[BLACK]) != 0) return false;
    ClearBoard();
    for (int square = 0; square < 64; ++square) {
        const bool isWhite = (actual.Occupied[WHITE] & SquareBit(square)) != 0;
        if (actual.PieceOn[square] != EMPTY) {
            AddPiece(square, isWhite ? WHITE : BLACK, actual.PieceOn[square]);
        }
    }
    Board rebuilt = board;
    board = actual;
    // Not derived from the men: the king row only counts up, and Fifty depends on the moves.
    std::copy_n(actual.PieceNumber[KING], 2, rebuilt.PieceNumber[KING]);
    rebuilt.Fifty = actual.Fifty;
    return rebuilt == actual;
}

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
    if (!IsBoardConsistent()) return "men were taken off without clearing the board";
    if (IsKingAttacked(ChangeSide(board.SideToMove))) return "the side not to move is in check";
    const Move last = LastMove();
    const Bitboard way = SquareBit(MoveFrom(last)) | SquareBit((MoveFrom(last) + MoveTo(last)) / 2);
    if (IsDoubleStep(last) && (way & AllOccupied())) return "no pawn can have made the double step";
    return nullptr;
}
