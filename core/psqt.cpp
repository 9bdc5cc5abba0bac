#include "core/psqt.h"

#include "core/bitboard.h"
#include "core/board.h"

PsqEntry PsqTable[PSQ_ENTRIES];

void RebuildPsqSums() {
    int opening = 0, ending = 0;
    for (const int side : {WHITE, BLACK}) {
        const int sign = side == BLACK ? 1 : -1;
        for (Bitboard men = board.Occupied[side]; men != 0;) {
            const int square = PopLowest(men);
            const PsqEntry& entry = PsqTable[PsqIndex(board.PieceOn[square], side, square)];
            opening += sign * entry.Opening;
            ending += sign * entry.Ending;
        }
    }
    board.PsqOpening = static_cast<int16_t>(opening);
    board.PsqEnding = static_cast<int16_t>(ending);
}
