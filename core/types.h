#pragma once

#include <cstdint>

// Sides, men, squares and the Move word, shared by every room.

// A set of squares: bit n stands for square n.
using Bitboard = uint64_t;

enum Side : int { WHITE = 0, BLACK = 1 };
constexpr int ChangeSide(int side) {
    return side ^ 1;
}

// Piece codes, without colour. Sliders are the codes above 3; of those, bit 0 says that the piece moves along
// ranks and files, bit 1 that it moves along diagonals. Code 4 is deliberately no piece.
enum Piece : unsigned { EMPTY = 0, KING = 1, KNIGHT = 2, PAWN = 3, ROOK = 5, BISHOP = 6, QUEEN = 7 };
constexpr int PIECE_CODES = 8;

constexpr bool IsSlider(unsigned piece) {
    return piece > 3;
}
constexpr bool IsStraightSlider(unsigned piece) {
    return IsSlider(piece) && (piece & 1) != 0;
}
constexpr bool IsDiagonalSlider(unsigned piece) {
    return IsSlider(piece) && (piece & 2) != 0;
}

// Letters by piece code: on the board picture, and after a promotion (none for EMPTY).
constexpr char PIECE_LETTERS[] = ".KNP?RBQ";
constexpr char PROMOTION_LETTERS[] = "\0knp?rbq";

// Material by piece code, in centipawns; the king's value is never added to a sum.
constexpr int PieceValue[PIECE_CODES] = {0, 10000, 300, 100, 0, 500, 300, 900};

// Squares: a1 = 0, h1 = 7, a8 = 56.
constexpr int FileOf(int square) {
    return square & 7;
}
constexpr int RankOf(int square) {
    return square >> 3;
}
constexpr int MakeSquare(int file, int rank) {
    return rank * 8 + file;
}
constexpr Bitboard SquareBit(int square) {
    return Bitboard{1} << square;
}

enum Square : int { A1 = 0, B1, C1, D1, E1, F1, G1, H1, A8 = 56, B8, C8, D8, E8, F8, G8, H8 };

// Castling rights, as bits of `board.CastlingFlags`.
enum CastlingRight : unsigned { WHITE_SHORT = 1, WHITE_LONG = 2, BLACK_SHORT = 4, BLACK_LONG = 8 };
constexpr unsigned ShortRight(int side) {
    return side == WHITE ? WHITE_SHORT : BLACK_SHORT;
}
constexpr unsigned LongRight(int side) {
    return side == WHITE ? WHITE_LONG : BLACK_LONG;
}

// A move: bits 0-5 from, 6-11 to, 12-14 moving piece, 15-17 captured piece, 18-20 promotion piece. Bits above
// 20 are 0. Castling is a king move of two files; an en-passant capture is a pawn move that changes file and
// has nothing in the captured field. 0 is no move (and the null move).
using Move = uint32_t;
constexpr Move NO_MOVE = 0;

constexpr Move BuildMove(int from, int to, unsigned piece, unsigned captured = EMPTY,
                         unsigned promotion = EMPTY) {
    return static_cast<Move>(from) | static_cast<Move>(to) << 6 | piece << 12 | captured << 15 |
           promotion << 18;
}
constexpr int MoveFrom(Move move) {
    return move & 63;
}
constexpr int MoveTo(Move move) {
    return (move >> 6) & 63;
}
constexpr unsigned MovePiece(Move move) {
    return (move >> 12) & 7;
}
constexpr unsigned MoveCaptured(Move move) {
    return (move >> 15) & 7;
}
constexpr unsigned MovePromotion(Move move) {
    return move >> 18;
}

// Whether the squares of the move differ in file parity: every pawn capture does, no pawn push does.
constexpr bool ChangesFileParity(Move move) {
    return (((move >> 6) ^ move) & 1) != 0;
}
constexpr bool IsEnPassant(Move move) {
    return MovePiece(move) == PAWN && MoveCaptured(move) == EMPTY && ChangesFileParity(move);
}
constexpr bool IsCastling(Move move) {
    const int files = FileOf(MoveTo(move)) - FileOf(MoveFrom(move));
    return MovePiece(move) == KING && (files == 2 || files == -2);
}
// Neither a capture nor a promotion. An en-passant capture is quiet by this test: its captured field is
// empty.
constexpr bool IsQuiet(Move move) {
    return (move & ~Move{0x7FFF}) == 0;
}

// Neither a capture of any kind nor a promotion.
constexpr bool TakesNothing(Move move) {
    return IsQuiet(move) && !IsEnPassant(move);
}

// Whether a pawn move keeps the parity of its rank, that is, steps two squares.
constexpr bool IsDoubleStep(Move move) {
    return MovePiece(move) == PAWN && (((move >> 6) ^ move) & 8) == 0;
}

// Where the pawn that an en-passant capture removes stands.
constexpr int EnPassantVictim(Move move) {
    return MakeSquare(FileOf(MoveTo(move)), RankOf(MoveFrom(move)));
}
