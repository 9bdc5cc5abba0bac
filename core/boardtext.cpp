#include "core/boardtext.h"

#include "core/board.h"
#include "platform/output.h"

void PrintBoard() {
    for (int rank = 7; rank >= 0; --rank) {
        for (int file = 0; file < 8; ++file) {
            const int square = MakeSquare(file, rank);
            const bool isBlack = (board.Occupied[BLACK] & SquareBit(square)) != 0;
            Print(isBlack ? "*%c" : " %c", PIECE_LETTERS[board.PieceOn[square]]);
        }
        Print("\n");
    }
    FlushOutput();
}
