#include "core/psqt.h"

#include <vector>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/makemove.h"

PsqEntry PsqTable[PSQ_ENTRIES];

namespace {

void SumMen() {
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

}  // namespace

void RebuildPsqSums() {
    struct PlayedMove {
        ::Move Move;
        int SideAfter;
    };
    std::vector<PlayedMove> moves;
    for (;;) {
        const PlayedMove played{LastMove(), board.SideToMove};
        if (!TakeBackMove()) break;
        moves.push_back(played);
    }
    SumMen();
    for (; !moves.empty(); moves.pop_back()) {
        const Move move = moves.back().Move;
        board.SideToMove = (board.Occupied[BLACK] & SquareBit(MoveFrom(move))) != 0 ? BLACK : WHITE;
        MakeMove(move, 1);
        board.SideToMove = moves.back().SideAfter;
    }
}
