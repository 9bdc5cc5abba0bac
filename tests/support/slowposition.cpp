#include "tests/support/slowposition.h"

#include <algorithm>
#include <cstdlib>

#include "core/board.h"

namespace {

struct Step {
    int Files, Ranks;
};

// Straight steps first, then diagonal ones.
constexpr Step STEPS[8] = {{0, 1}, {0, -1}, {1, 0}, {-1, 0}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
constexpr Step JUMPS[8] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};

// A square as a step from another leads to it, -1 off the board.
int Shift(int square, Step step) {
    const int file = square % 8 + step.Files, rank = square / 8 + step.Ranks;
    return file < 0 || file > 7 || rank < 0 || rank > 7 ? -1 : rank * 8 + file;
}

Bitboard ShiftBit(int square, Step step) {
    const int to = Shift(square, step);
    return to < 0 ? 0 : Bitboard{1} << to;
}

int Forward(int side) {
    return side == WHITE ? 1 : -1;
}

// The castling rights that a square's man must stay at home for.
unsigned RightsOf(int square) {
    switch (square) {
        case A1:
            return 2;
        case E1:
            return 3;
        case H1:
            return 1;
        case A8:
            return 8;
        case E8:
            return 12;
        case H8:
            return 4;
        default:
            return 0;
    }
}

void AddPawnMove(std::vector<Move>& moves, int from, int to, unsigned captured) {
    if (to / 8 != 0 && to / 8 != 7) {
        moves.push_back(BuildMove(from, to, PAWN, captured));
        return;
    }
    for (const unsigned piece : {KNIGHT, BISHOP, ROOK, QUEEN}) {
        moves.push_back(BuildMove(from, to, PAWN, captured, piece));
    }
}

void AddPawnMoves(const SlowPosition& position, std::vector<Move>& moves, int from) {
    const int side = position.SideToMove, ahead = Forward(side);
    const int one = Shift(from, {0, ahead});
    if (one >= 0 && position.IsEmpty(one)) {
        AddPawnMove(moves, from, one, EMPTY);
        const int two = Shift(one, {0, ahead});
        if (from / 8 == (side == WHITE ? 1 : 6) && position.IsEmpty(two)) {
            AddPawnMove(moves, from, two, EMPTY);
        }
    }
    for (const int files : {-1, 1}) {
        const int to = Shift(from, {files, ahead});
        if (to < 0) continue;
        const SlowPosition::Man& man = position.Men[to];
        if (man.Piece != EMPTY && man.Side != side) AddPawnMove(moves, from, to, man.Piece);
        if (position.Stepped >= 0 && Shift(from, {files, 0}) == position.Stepped) {
            moves.push_back(BuildMove(from, to, PAWN));
        }
    }
}

void AddCastling(const SlowPosition& position, std::vector<Move>& moves) {
    const int side = position.SideToMove, home = side == WHITE ? E1 : E8;
    const auto isSafe = [&](int square) { return position.AttackersOf(side ^ 1, square) == 0; };
    for (const bool isShort : {true, false}) {
        if (!(position.Castling >> (side == WHITE ? 0 : 2) & (isShort ? 1 : 2))) continue;
        const int toward = isShort ? 1 : -1, rook = isShort ? home + 3 : home - 4;
        bool isFree = isSafe(home) && isSafe(home + toward) && isSafe(home + 2 * toward);
        for (int square = home + toward; square != rook; square += toward) {
            isFree = isFree && position.IsEmpty(square);
        }
        if (isFree) moves.push_back(BuildMove(home, home + 2 * toward, KING));
    }
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
    const Move last = LastMove();
    if (MovePiece(last) == PAWN && std::abs(MoveTo(last) - MoveFrom(last)) == 16) {
        position.Stepped = MoveTo(last);
    }
    return position;
}

int SlowPosition::KingOf(int side) const {
    const auto king = std::find(Men.begin(), Men.end(), Man{KING, side});
    return king == Men.end() ? -1 : static_cast<int>(king - Men.begin());
}

Bitboard SlowPosition::Walk(int square, int files, int ranks) const {
    Bitboard set = 0;
    for (int to = Shift(square, {files, ranks}); to >= 0; to = Shift(to, {files, ranks})) {
        set |= Bitboard{1} << to;
        if (!IsEmpty(to)) break;
    }
    return set;
}

Bitboard SlowPosition::AttacksFrom(int square, int side, unsigned piece) const {
    Bitboard set = 0;
    for (int i = 0; i < 8; ++i) {
        const Step step = STEPS[i];
        const bool isStraight = i < 4;
        if (piece == KING) set |= ShiftBit(square, step);
        if (piece == KNIGHT) set |= ShiftBit(square, JUMPS[i]);
        if (piece == PAWN && !isStraight && step.Ranks == Forward(side)) set |= ShiftBit(square, step);
        const bool slides = piece == QUEEN || piece == (isStraight ? ROOK : BISHOP);
        if (slides) set |= Walk(square, step.Files, step.Ranks);
    }
    return set;
}

Bitboard SlowPosition::AttackersOf(int side, int square) const {
    Bitboard set = 0;
    for (int from = 0; from < 64; ++from) {
        if (IsEmpty(from) || Men[from].Side != side) continue;
        if (AttacksFrom(from, side, Men[from].Piece) >> square & 1) set |= Bitboard{1} << from;
    }
    return set;
}

bool SlowPosition::IsInCheck() const {
    return AttackersOf(SideToMove ^ 1, KingOf(SideToMove)) != 0;
}

std::vector<Move> SlowPosition::LegalMoves() const {
    std::vector<Move> moves;
    AddCastling(*this, moves);
    for (int from = 0; from < 64; ++from) {
        const Man& man = Men[from];
        if (man.Piece == EMPTY || man.Side != SideToMove) continue;
        if (man.Piece == PAWN) {
            AddPawnMoves(*this, moves, from);
            continue;
        }
        const Bitboard targets = AttacksFrom(from, SideToMove, man.Piece);
        for (int to = 0; to < 64; ++to) {
            if (!(targets >> to & 1) || (!IsEmpty(to) && Men[to].Side == SideToMove)) continue;
            moves.push_back(BuildMove(from, to, man.Piece, Men[to].Piece));
        }
    }
    std::erase_if(moves, [this](Move move) {
        SlowPosition after = *this;
        after.Play(move);
        return after.AttackersOf(SideToMove ^ 1, after.KingOf(SideToMove)) != 0;
    });
    std::sort(moves.begin(), moves.end());
    return moves;
}

void SlowPosition::Play(Move move) {
    const int from = MoveFrom(move), to = MoveTo(move);
    const Man man = Men[from];
    Fifty = man.Piece == PAWN || !IsEmpty(to) ? 0 : Fifty + 1;
    if (man.Piece == PAWN && from % 8 != to % 8 && IsEmpty(to)) Men[from / 8 * 8 + to % 8] = {};
    if (man.Piece == KING && std::abs(to - from) == 2) {
        const int rook = to > from ? from + 3 : from - 4;
        Men[(from + to) / 2] = Men[rook];
        Men[rook] = {};
    }
    Men[to] = man;
    Men[from] = {};
    if (MovePromotion(move) != EMPTY) Men[to].Piece = MovePromotion(move);
    Castling &= ~(RightsOf(from) | RightsOf(to));
    Stepped = man.Piece == PAWN && std::abs(to - from) == 16 ? to : -1;
    SideToMove ^= 1;
}

std::string SlowPosition::Text() const {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        for (int file = 0; file < 8; ++file) {
            const Man& man = Men[rank * 8 + file];
            const char letter = man.Piece == EMPTY ? '1' : PIECE_LETTERS[man.Piece];
            text += static_cast<char>(man.Side == BLACK && man.Piece != EMPTY ? letter + 32 : letter);
        }
        if (rank > 0) text += '/';
    }
    text += SideToMove == WHITE ? " w " : " b ";
    for (int right = 0; right < 4; ++right) {
        if (Castling >> right & 1) text += "KQkq"[right];
    }
    text += Castling != 0 ? " " : "- ";
    if (Stepped < 0) return text + "-";
    return text + static_cast<char>('a' + Stepped % 8) + static_cast<char>('1' + Stepped / 8);
}
