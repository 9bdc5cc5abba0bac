#pragma once

#include <cstdlib>
#include <limits>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/types.h"

// How the procedures for single endings look at the board: there is a strong side, and ranks are counted from
// its back rank, so that each rule is written once. Their scores are centipawns in favour of the strong side.

// Not a score: the ending isn't known.
constexpr int UNKNOWN_ENDING = std::numeric_limits<int>::min();

constexpr bool IsLightSquare(int square) {
    return (LIGHT_SQUARES & SquareBit(square)) != 0;
}

// The side that a Black-positive score favours.
constexpr int LeaderOf(int score) {
    return score > 0 ? BLACK : WHITE;
}

struct EndingView {
    int Strong;
    int Weak;
    int StrongKing;
    int WeakKing;
    bool IsStrongToMove;

    explicit EndingView(int strong)
        : Strong(strong),
          Weak(ChangeSide(strong)),
          StrongKing(Seen(static_cast<int>(board.KingSquare[strong]))),
          WeakKing(Seen(static_cast<int>(board.KingSquare[ChangeSide(strong)]))),
          IsStrongToMove(board.SideToMove == strong) {}

    // A square of the board as the strong side sees it, and back again.
    int Seen(int square) const { return Strong == WHITE ? square : square ^ 56; }

    // The first man of the kind; the side must have one.
    int SquareOf(unsigned piece, int side) const { return Seen(LowestSquare(board.Pieces[piece][side])); }

    static int Count(unsigned piece, int side) { return static_cast<int>(board.PieceNumber[piece][side]); }
    static int Units(int side) { return static_cast<int>(board.PieceMaterial[side]); }
    int Lead() const { return board.Material[Strong] - board.Material[Weak]; }
    bool IsWeakBare() const { return board.Material[Weak] == 0; }

    // The strong side's pawn that is nearest to promotion; there must be one.
    int FirstPawn() const {
        const Bitboard pawns = board.Pieces[PAWN][Strong];
        return Strong == WHITE ? HighestSquare(pawns) : LowestSquare(pawns) ^ 56;
    }
};

// Whether the pawns of both sides stand on the a- to d-files or on the e- to h-files.
inline bool AreAllPawnsOnOneWing() {
    const Bitboard pawns = board.Pieces[PAWN][WHITE] | board.Pieces[PAWN][BLACK];
    constexpr Bitboard LEFT = FileBits(0) | FileBits(1) | FileBits(2) | FileBits(3);
    return (pawns & LEFT) == 0 || (pawns & ~LEFT) == 0;
}

// Whether bishops of the side stand on squares of both colours.
inline bool HasBishopPair(int side) {
    const Bitboard bishops = board.Pieces[BISHOP][side];
    return (bishops & LIGHT_SQUARES) != 0 && (bishops & ~LIGHT_SQUARES) != 0;
}
