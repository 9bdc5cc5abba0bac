#include "tests/support/slowposition.h"

#include <algorithm>
#include <cstdlib>

#include "core/board.h"

namespace {

// The castling rights that a square's man must stay at home for.
unsigned RightsOf(int square) {
    constexpr struct {
        int Square;
        unsigned Rights;
    } HOMES[] = {{A1, 2}, {E1, 3}, {H1, 1}, {A8, 8}, {E8, 12}, {H8, 4}};
    for (const auto& home : HOMES) {
        if (home.Square == square) return home.Rights;
    }
    return 0;
}

}  // namespace

SlowPosition SlowPosition::FromBoard() {
    SlowPosition position;
    for (int square = 0; square < 64; ++square) {
        const bool isBlack = (board.Occupied[BLACK] >> square & 1) != 0;
        position.Men[square] = {board.PieceOn[square], isBlack ? BLACK : WHITE};
    }
    position.SideToMove = board.SideToMove;
    position.Castling = board.CastlingFlags;
    position.Fifty = board.Fifty;
    return position;
}

int SlowPosition::KingOf(int side) const {
    return static_cast<int>(std::find(Men.begin(), Men.end(), Man{KING, side}) - Men.begin());
}

Bitboard SlowPosition::Walk(int square, int files, int ranks, int steps) const {
    Bitboard set = 0;
    int file = square % 8 + files, rank = square / 8 + ranks;
    for (; steps > 0 && file >= 0 && file < 8 && rank >= 0 && rank < 8; --steps) {
        set |= Bitboard{1} << (rank * 8 + file);
        if (Men[rank * 8 + file].Piece != EMPTY) break;
        file += files;
        rank += ranks;
    }
    return set;
}

Bitboard SlowPosition::AttacksFrom(int square, int side, unsigned piece) const {
    Bitboard set = 0;
    for (int files = -2; files <= 2; ++files) {
        for (int ranks = -2; ranks <= 2; ++ranks) {
            const int length = files * files + ranks * ranks;  // 1 straight, 2 diagonal, 5 a knight's jump
            const bool slides = (length == 1 && (piece == ROOK || piece == QUEEN)) ||
                                (length == 2 && (piece == BISHOP || piece == QUEEN));
            const bool steps = (piece == KING && (length == 1 || length == 2)) ||
                               (piece == KNIGHT && length == 5) ||
                               (piece == PAWN && length == 2 && ranks == (side == WHITE ? 1 : -1));
            if (slides || steps) set |= Walk(square, files, ranks, slides ? 7 : 1);
        }
    }
    return set;
}

Bitboard SlowPosition::AttackersOf(int side, int square) const {
    Bitboard set = 0;
    for (int from = 0; from < 64; ++from) {
        if (Men[from].Piece == EMPTY || Men[from].Side != side) continue;
        if (AttacksFrom(from, side, Men[from].Piece) >> square & 1) set |= Bitboard{1} << from;
    }
    return set;
}

void SlowPosition::Play(Move move) {
    const int from = MoveFrom(move), to = MoveTo(move);
    const Man man = Men[from];
    const bool isCapture = Men[to].Piece != EMPTY;
    Fifty = man.Piece == PAWN || isCapture ? 0 : Fifty + 1;
    if (man.Piece == PAWN && from % 8 != to % 8 && !isCapture) Men[from / 8 * 8 + to % 8] = {};
    if (man.Piece == KING && std::abs(to - from) == 2) {
        const int rook = to > from ? from + 3 : from - 4;
        Men[(from + to) / 2] = Men[rook];
        Men[rook] = {};
    }
    Men[to] = man;
    Men[from] = {};
    if (MovePromotion(move) != EMPTY) Men[to].Piece = MovePromotion(move);
    Castling &= ~(RightsOf(from) | RightsOf(to));
    SideToMove ^= 1;
}
