#include "core/keys.h"

#include "core/board.h"

uint64_t PieceKeys[2][PIECE_CODES][64];
uint64_t CastleKeys[16];
uint64_t EnPassantKeys[8];

namespace {

// A linear congruential generator, written out so that the keys don't depend on the C library in use.
uint32_t KeyState = 1;

uint32_t NextDraw() {
    KeyState = KeyState * 214013u + 2531011u;
    return (KeyState >> 16) & 0x7FFF;
}

}  // namespace

uint64_t RandomKey64() {
    uint64_t key = 0;
    for (int bit = 0; bit < 64; ++bit) key |= static_cast<uint64_t>(NextDraw() & 1) << bit;
    return key;
}

void InitHashKeys() {
    KeyState = 1;
    for (int square = 0; square < 64; ++square) {
        for (const unsigned piece : {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
            for (const int side : {WHITE, BLACK}) PieceKeys[side][piece][square] = RandomKey64();
        }
    }
    for (uint64_t& key : CastleKeys) key = RandomKey64();
    for (uint64_t& key : EnPassantKeys) key = RandomKey64();
}

uint64_t PositionKey() {
    uint64_t key = board.HashKey ^ CastleKeys[board.CastlingFlags];
    const int victim = DoubleStepSquare();
    if (victim >= 0) {
        const int file = FileOf(victim);
        const Bitboard pawns = board.Pieces[PAWN][board.SideToMove];
        const bool hasLeft = file > 0 && (pawns & SquareBit(victim - 1)) != 0;
        const bool hasRight = file < 7 && (pawns & SquareBit(victim + 1)) != 0;
        if (hasLeft || hasRight) key ^= EnPassantKeys[file];
    }
    return key;
}
