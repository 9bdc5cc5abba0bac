#include "core/keys.h"

#include "core/bitboard.h"
#include "core/board.h"

uint64_t PieceKeys[2][PIECE_CODES][64];
uint64_t CastleKeys[16];
uint64_t EnPassantKeys[8];

namespace {

KeyGenerator Generator;

// What a double step that ended on the square adds to the key: its file, when a pawn of `side` stands beside.
uint64_t EnPassantKey(int victim, int side) {
    const Bitboard beside = (SquareBit(victim) & ~FILE_A) >> 1 | (SquareBit(victim) & ~FILE_H) << 1;
    return (beside & board.Pieces[PAWN][side]) != 0 ? EnPassantKeys[FileOf(victim)] : 0;
}

}  // namespace

uint64_t RandomKey64() {
    uint64_t key = 0;
    for (int bit = 0; bit < 64; ++bit) key |= static_cast<uint64_t>(Generator.Draw() & 1) << bit;
    return key;
}

void InitHashKeys() {
    Generator = KeyGenerator();
    for (int square = 0; square < 64; ++square) {
        for (const unsigned piece : {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
            for (const int side : {WHITE, BLACK}) PieceKeys[side][piece][square] = RandomKey64();
        }
    }
    for (uint64_t& key : CastleKeys) key = RandomKey64();
    for (uint64_t& key : EnPassantKeys) key = RandomKey64();
}

uint64_t PositionKey() {
    const int victim = DoubleStepSquare();
    return board.HashKey ^ CastleKeys[board.CastlingFlags] ^
           (victim < 0 ? 0 : EnPassantKey(victim, board.SideToMove));
}

uint64_t HashKeyAfter(Move move) {
    const int us = board.SideToMove, from = MoveFrom(move), to = MoveTo(move);
    const unsigned piece = MovePiece(move), promotion = MovePromotion(move);
    uint64_t key = board.HashKey ^ PieceKeys[us][piece][from] ^
                   PieceKeys[us][promotion == EMPTY ? piece : promotion][to] ^
                   PieceKeys[ChangeSide(us)][MoveCaptured(move)][to];
    if (IsEnPassant(move)) key ^= PieceKeys[ChangeSide(us)][PAWN][EnPassantVictim(move)];
    if (IsCastling(move)) {
        const bool isShort = to > from;
        key ^=
            PieceKeys[us][ROOK][isShort ? to + 1 : to - 2] ^ PieceKeys[us][ROOK][isShort ? to - 1 : to + 1];
    }
    return key;
}

uint64_t PositionKeyAfter(Move move) {
    const unsigned piece = MovePiece(move);
    unsigned flags = board.CastlingFlags;
    if (piece == KING || piece == ROOK) flags &= CastleMask[static_cast<size_t>(MoveFrom(move))];
    if (MoveCaptured(move) == ROOK) flags &= CastleMask[static_cast<size_t>(MoveTo(move))];
    const uint64_t key = HashKeyAfter(move) ^ CastleKeys[flags];
    return IsDoubleStep(move) ? key ^ EnPassantKey(MoveTo(move), ChangeSide(board.SideToMove)) : key;
}
