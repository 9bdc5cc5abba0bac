#include "core/attackquery.h"

#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"

bool IsSquareAttacked(int side, int square) {
    if (PawnCaptures[ChangeSide(side)][square] & board.Pieces[PAWN][side]) return true;
    if (KnightTargets[square] & board.Pieces[KNIGHT][side]) return true;
    if (KingTargets[square] & board.Pieces[KING][side]) return true;
    // The rays on an empty board keep most squares away from the exact lookups.
    const Bitboard straight = board.StraightSliders & board.Occupied[side];
    if ((straight & StraightRays[square]) && (StraightAttacks(square) & straight)) return true;
    const Bitboard diagonal = board.DiagonalSliders & board.Occupied[side];
    return (diagonal & DiagonalRays[square]) && (DiagonalAttacks(square) & diagonal);
}

Bitboard AttackersOf(int side, int square) {
    return (DiagonalAttacks(square) & (board.Pieces[BISHOP][side] | board.Pieces[QUEEN][side])) |
           (StraightAttacks(square) & (board.Pieces[ROOK][side] | board.Pieces[QUEEN][side])) |
           (KingTargets[square] & board.Pieces[KING][side]) |
           (KnightTargets[square] & board.Pieces[KNIGHT][side]) |
           (PawnCaptures[ChangeSide(side)][square] & board.Pieces[PAWN][side]);
}

Bitboard AttacksFrom(int square, int side, unsigned piece) {
    switch (piece) {
        case KING:
            return KingTargets[square];
        case KNIGHT:
            return KnightTargets[square];
        case PAWN:
            return PawnCaptures[side][square];
        case ROOK:
            return StraightAttacks(square);
        case BISHOP:
            return DiagonalAttacks(square);
        case QUEEN:
            return StraightAttacks(square) | DiagonalAttacks(square);
        default:
            return 0;
    }
}

namespace {

// The attack set along the whole line that a step belongs to.
Bitboard LineAttacks(int square, int step) {
    switch (step) {
        case 1:
        case -1:
            return AttacksOnRank(square);
        case 8:
        case -8:
            return AttacksOnFile(square);
        case 9:
        case -9:
            return AttacksOnDiagA1H8(square);
        default:
            return AttacksOnDiagA8H1(square);
    }
}

}  // namespace

Bitboard XrayRay(int target, int square) {
    const int step = Direction[target * 64 + square];
    const Bitboard sliders = HalfRays[DirectionIndex(step)][square] &
                             (IsStraightStep(step) ? board.StraightSliders : board.DiagonalSliders);
    // Nobody stands behind most men.
    return sliders == 0 ? 0 : LineAttacks(square, step) & sliders;
}

bool IsLoneBlocker(int target, int square, int side) {
    if (Direction[target * 64 + square] == 0) return false;
    if (BetweenSquares[target * 64 + square] & AllOccupied()) return false;
    return (XrayRay(target, square) & board.Occupied[side]) != 0;
}

bool IsPinned(int square) {
    const int us = board.SideToMove;
    return IsLoneBlocker(static_cast<int>(board.KingSquare[us]), square, ChangeSide(us));
}

bool IsKingAttacked(int side) {
    return IsSquareAttacked(ChangeSide(side), static_cast<int>(board.KingSquare[side]));
}
