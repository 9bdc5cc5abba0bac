#pragma once

#include <array>

#include "core/types.h"

// The one position, and the record of how it came about. Written by the procedures of this header, by make
// and unmake (makemove.h), by a look back (rewind.h), by whatever sets up a position or its side to move
// (fen.cpp, editboard.cpp, the commands "white" and "black"), and by what rebuilds a sum of it (material.h,
// psqt.h); everybody reads.

// A set of line-occupancy words: bit i of a word is set when square i of the line is occupied. Squares of a
// rank count by file, those of all other lines by rank, so that one lookup table serves all four kinds.
template <int lines>
using OccupancyWords = std::array<uint32_t, lines>;

struct Board {
    uint32_t MajorCount[2];      // rooks count 1, queens 2
    uint32_t MinorCount[2];      // knights and bishops
    uint32_t PieceCount;         // all men, kings and pawns included
    uint32_t CastlingFlags;      // CastlingRight bits
    int16_t PsqOpening;          // Black-positive sum of the opening piece-square entries; wraps
    int16_t PsqEnding;           // the same for the ending
    uint32_t MaterialSignature;  // index of the material (material.h), or NO_SIGNATURE
    uint32_t Fifty;              // plies since the last capture or pawn move
    int32_t SideToMove;
    Bitboard Occupied[2];
    Bitboard Pieces[PIECE_CODES][2];  // rows 0 and 4 stay empty
    OccupancyWords<8> RankOccupancy;
    OccupancyWords<8> FileOccupancy;
    OccupancyWords<15> DiagA8H1Occupancy;  // by file + rank
    OccupancyWords<15> DiagA1H8Occupancy;  // by file - rank + 7
    uint32_t KingSquare[2];
    Bitboard StraightSliders;  // rooks and queens of both sides
    Bitboard DiagonalSliders;  // bishops and queens of both sides
    // Men by code and side. The king row is only ever counted up by AddPiece; nothing depends on it.
    uint32_t PieceNumber[PIECE_CODES][2];
    uint32_t PieceOn[64];       // piece code, 0 when empty
    uint64_t HashKey;           // XOR of the keys of all men; no castling, en passant or side to move
    uint64_t PawnHashKey;       // the same over the pawns
    int32_t Material[2];        // centipawns without the king
    uint32_t PieceMaterial[2];  // non-pawn material in pawn units: 3, 3, 5, 9

    bool operator==(const Board&) const = default;
};

extern Board board;

// Non-pawn material by piece code, in pawn units.
constexpr uint32_t PieceUnits[PIECE_CODES] = {0, 0, 3, 0, 0, 5, 3, 9};

// Knights, bishops, rooks and queens of a side.
inline uint32_t CountPieces(int side) {
    return board.MinorCount[side] + board.PieceNumber[ROOK][side] + board.PieceNumber[QUEEN][side];
}

// Whether either side has a pawn.
inline bool HasPawns() {
    return (board.Pieces[PAWN][WHITE] | board.Pieces[PAWN][BLACK]) != 0;
}

// What a move leaves behind so that it can be taken back and repetitions can be seen.
#pragma pack(push, 4)
struct HistoryRecord {
    uint64_t HashKey;  // this and all the following but Move: the board's field before the move
    uint32_t Fifty;
    ::Move Move;  // the move made from that position
    uint32_t CastlingFlags;
    uint32_t MaterialSignature;
    int16_t PsqOpening;
    int16_t PsqEnding;
};
#pragma pack(pop)
static_assert(sizeof(HistoryRecord) == 28);

constexpr int HISTORY_SIZE = 768;

// The moves since the position was set up, search moves included. HistoryStorage[0] is a record of zeros that
// stands before the first one, so that LastMove() is 0 when no move has been made.
extern HistoryRecord HistoryStorage[HISTORY_SIZE + 1];
inline HistoryRecord* const History = HistoryStorage + 1;
extern int HistoryLength;  // records in use, 0..HISTORY_SIZE

// How many records of this game have been let go to keep the game within History; reset by every set-up.
extern int HistoryForgotten;

// The move that led to the position, 0 when there is none.
inline Move LastMove() {
    return History[HistoryLength - 1].Move;
}

// The square of an opponent's pawn that has just made a double step, or -1. A command may have passed the
// turn since the last move, so it need not have been the opponent's.
inline int DoubleStepSquare() {
    const Move last = LastMove();
    const int step = board.SideToMove == WHITE ? -16 : 16;
    const bool isDoubleStep = MovePiece(last) == PAWN && MoveTo(last) - MoveFrom(last) == step;
    return isDoubleStep ? MoveTo(last) : -1;
}

// Whether the man stands on the square, by all that the board says: of two kings of a side only one counts.
inline bool HasMan(int square, int side, unsigned piece) {
    const Bitboard men = board.Pieces[piece][side] & board.Occupied[side];
    return board.PieceOn[square] == piece && (men & SquareBit(square)) != 0;
}

// The number of plies played since the set-up, forgotten ones included.
inline int GamePly() {
    return HistoryLength + HistoryForgotten;
}

// Free records that every command finds: enough for the deepest search or perft line.
constexpr int HISTORY_RESERVE = 208;

// Makes room for at least `plies` more records by letting the oldest go, never the last hundred or so that a
// repetition or the fifty-move rule could reach. `plies` is at most 256.
void ReserveHistory(int plies);

// Squares whose king or rook carries a castling right: the flags are ANDed with the entry of a square that a
// king or rook leaves, or on which a rook is taken.
extern const std::array<uint8_t, 64> CastleMask;

// Empties the board: counters, sums, signature, Fifty, keys and sets become 0. SideToMove, CastlingFlags and
// KingSquare are left to the caller, and so, deliberately, is the king row of PieceNumber.
void ClearBoard();

// Puts a man on an empty square and brings every derived field up to date. The square must be empty and the
// code valid. A king's set holds one square: the last one placed.
void AddPiece(int square, int side, unsigned piece);

// Sets up the initial position and forgets all moves.
void ResetBoard();

// Sets and clears the bits of a square in its four occupancy words. Always inlined: left to itself, the
// compiler calls them, and they are a fifth of making a move.
[[gnu::always_inline]] inline void SetOccupancy(int square) {
    const int file = FileOf(square), rank = RankOf(square);
    board.RankOccupancy[rank] |= 1u << file;
    board.FileOccupancy[file] |= 1u << rank;
    board.DiagA8H1Occupancy[file + rank] |= 1u << rank;
    board.DiagA1H8Occupancy[file - rank + 7] |= 1u << rank;
}

[[gnu::always_inline]] inline void ClearOccupancy(int square) {
    const int file = FileOf(square), rank = RankOf(square);
    board.RankOccupancy[rank] &= ~(1u << file);
    board.FileOccupancy[file] &= ~(1u << rank);
    board.DiagA8H1Occupancy[file + rank] &= ~(1u << rank);
    board.DiagA1H8Occupancy[file - rank + 7] &= ~(1u << rank);
}

// All men.
inline Bitboard AllOccupied() {
    return board.Occupied[WHITE] | board.Occupied[BLACK];
}
