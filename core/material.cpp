#include "core/material.h"

#include "core/board.h"
#include "platform/output.h"

void ComputeMaterialSignature() {
    uint32_t signature = 0;
    for (const unsigned piece : {QUEEN, ROOK, BISHOP, KNIGHT, PAWN}) {
        for (const int side : {WHITE, BLACK}) {
            const uint32_t number = board.PieceNumber[piece][side];
            if (piece != PAWN && number > 2) {
                board.MaterialSignature = NO_SIGNATURE;
                return;
            }
            signature += number * SignatureWeight[piece][side];
        }
    }
    // Only a board with more pawns than a game can have gets here with such a sum.
    if (signature > SIGNATURE_COUNT) {
        Print("Error when indexing material!\n");
        FlushOutput();
    }
    board.MaterialSignature = signature;
}
