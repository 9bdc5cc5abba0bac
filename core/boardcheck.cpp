#include "core/boardcheck.h"

#include <algorithm>

#include "core/board.h"
#include "core/material.h"

bool IsBoardExact() {
    const Board actual = board;
    if ((actual.Occupied[WHITE] & actual.Occupied[BLACK]) != 0) return false;
    for (const uint32_t piece : actual.PieceOn) {
        if (piece >= PIECE_CODES || piece == 4) return false;
    }
    ClearBoard();
    for (int square = 0; square < 64; ++square) {
        const bool isWhite = (actual.Occupied[WHITE] & SquareBit(square)) != 0;
        if (actual.PieceOn[square] != EMPTY) {
            AddPiece(square, isWhite ? WHITE : BLACK, actual.PieceOn[square]);
        }
    }
    Board rebuilt = board;
    board = actual;
    std::copy_n(actual.PieceNumber[KING], 2, rebuilt.PieceNumber[KING]);
    rebuilt.Fifty = actual.Fifty;
    if (actual.MaterialSignature == NO_SIGNATURE) rebuilt.MaterialSignature = NO_SIGNATURE;
    return rebuilt == actual;
}
