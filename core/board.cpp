#include "core/board.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "core/bitboard.h"
#include "core/keys.h"
#include "core/material.h"
#include "core/psqt.h"

Board board;
HistoryRecord HistoryStorage[HISTORY_SIZE + 1];
int HistoryLength = 0;
int HistoryForgotten = 0;

namespace {

constexpr std::array<uint8_t, 64> BuildCastleMask() {
    std::array<uint8_t, 64> mask{};
    mask.fill(255);
    mask[A1] = 255 & ~WHITE_LONG;
    mask[E1] = 255 & ~(WHITE_LONG | WHITE_SHORT);
    mask[H1] = 255 & ~WHITE_SHORT;
    mask[A8] = 255 & ~BLACK_LONG;
    mask[E8] = 255 & ~(BLACK_LONG | BLACK_SHORT);
    mask[H8] = 255 & ~BLACK_SHORT;
    return mask;
}

// Twice the reach of the fifty-move rule: what no draw test can look behind.
constexpr int KEPT_RECORDS = 204;

}  // namespace

constexpr std::array<uint8_t, 64> CastleMask = BuildCastleMask();

void ReserveHistory(int plies) {
    assert(plies <= 256);
    if (HistoryLength + plies <= HISTORY_SIZE) return;
    // An even number goes, so that a record's index keeps telling the side that moved.
    const int forgotten = (HistoryLength - KEPT_RECORDS) & ~1;
    std::copy(History + forgotten, History + HistoryLength, History);
    HistoryLength -= forgotten;
    HistoryForgotten += forgotten;
}

void ClearBoard() {
    Board empty{};
    empty.SideToMove = board.SideToMove;
    empty.CastlingFlags = board.CastlingFlags;
    std::copy_n(board.KingSquare, 2, empty.KingSquare);
    std::copy_n(board.PieceNumber[KING], 2, empty.PieceNumber[KING]);
    board = empty;
}

void AddPiece(int square, int side, unsigned piece) {
    const Bitboard bit = SquareBit(square);
    const uint32_t number = ++board.PieceNumber[piece][side];
    board.PieceCount += 1;
    if (piece != KING) {
        board.Material[side] += PieceValue[piece];
        board.PieceMaterial[side] += PieceUnits[piece];
        if (piece == ROOK || piece == QUEEN) board.MajorCount[side] += piece == QUEEN ? 2 : 1;
        if (piece == KNIGHT || piece == BISHOP) board.MinorCount[side] += 1;
    }
    const PsqEntry& entry = PsqTable[PsqIndex(piece, side, square)];
    const int sign = side == BLACK ? 1 : -1;
    board.PsqOpening = static_cast<int16_t>(board.PsqOpening + sign * entry.Opening);
    board.PsqEnding = static_cast<int16_t>(board.PsqEnding + sign * entry.Ending);

    board.Occupied[side] |= bit;
    board.PieceOn[square] = piece;
    SetOccupancy(square);
    board.HashKey ^= PieceKeys[side][piece][square];
    if (piece == KING) {
        board.Pieces[KING][side] = bit;
        board.KingSquare[side] = square;
        return;
    }
    board.Pieces[piece][side] |= bit;
    if (piece == PAWN) board.PawnHashKey ^= PieceKeys[side][PAWN][square];
    if (IsStraightSlider(piece)) board.StraightSliders ^= bit;
    if (IsDiagonalSlider(piece)) board.DiagonalSliders ^= bit;
    if (board.MaterialSignature != NO_SIGNATURE) {
        // Pawns are deliberately not counted: nine of a side can't arise in a game.
        const bool isInRange = piece == PAWN || number < 3;
        board.MaterialSignature =
            isInRange ? board.MaterialSignature + SignatureWeight[piece][side] : NO_SIGNATURE;
    }
}

void ResetBoard() {
    static constexpr unsigned BACK_RANK[8] = {ROOK, KNIGHT, BISHOP, QUEEN, KING, BISHOP, KNIGHT, ROOK};
    HistoryLength = 0;
    HistoryForgotten = 0;
    ClearBoard();
    for (int file = 0; file < 8; ++file) AddPiece(MakeSquare(file, 0), WHITE, BACK_RANK[file]);
    for (int file = 0; file < 8; ++file) AddPiece(MakeSquare(file, 1), WHITE, PAWN);
    for (int file = 0; file < 8; ++file) AddPiece(MakeSquare(file, 7), BLACK, BACK_RANK[file]);
    for (int file = 0; file < 8; ++file) AddPiece(MakeSquare(file, 6), BLACK, PAWN);
    board.KingSquare[WHITE] = E1;
    board.KingSquare[BLACK] = E8;
    board.SideToMove = WHITE;
    board.CastlingFlags = WHITE_SHORT | WHITE_LONG | BLACK_SHORT | BLACK_LONG;
}
