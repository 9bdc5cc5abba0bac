#include "egtb/tablemoves.h"

namespace {

constexpr int Ahead(int side) {
    return side == WHITE ? 8 : -8;
}

}  // namespace

TablePosition AfterMove(const TablePosition& position, unsigned piece, const TableMove& move) {
    const int us = position.SideToMove, them = ChangeSide(us);
    TablePosition after = position;
    after.SideToMove = them;
    after.DoubleStep = -1;
    after.Men[us][piece] ^= SquareBit(move.From);
    after.Men[us][move.Promotion == EMPTY ? piece : move.Promotion] |= SquareBit(move.To);
    if (move.LeavesClass) {
        Bitboard taken = SquareBit(move.To);
        if (piece == PAWN && (AllOccupied(position) & taken) == 0 && FileOf(move.From) != FileOf(move.To)) {
            taken = SquareBit(position.DoubleStep);
        }
        for (const unsigned victim : TableKinds) after.Men[them][victim] &= ~taken;
    } else if (piece == PAWN && move.To - move.From == 2 * Ahead(us)) {
        after.DoubleStep = move.To;
        if (EnPassantCapturers(after) == 0) after.DoubleStep = -1;
    }
    return after;
}

Bitboard PawnTargets(const TablePosition& position, int square) {
    const int us = position.SideToMove, ahead = Ahead(us);
    const Bitboard occupied = AllOccupied(position);
    Bitboard takeable = OccupiedBy(position, ChangeSide(us));
    if (position.DoubleStep >= 0) takeable |= SquareBit(position.DoubleStep + ahead);
    Bitboard targets = PawnCaptures[us][square] & takeable;
    if (occupied & SquareBit(square + ahead)) return targets;
    targets |= SquareBit(square + ahead);
    if (RankOf(square) != (us == WHITE ? 1 : 6)) return targets;
    return targets | (SquareBit(square + 2 * ahead) & ~occupied);
}

Bitboard PawnOrigins(const TablePosition& position, int square) {
    const int us = ChangeSide(position.SideToMove), ahead = Ahead(us);
    const Bitboard empty = ~AllOccupied(position) & PAWN_RANKS;
    const Bitboard one = SquareBit(square - ahead) & empty;
    if (one == 0 || RankOf(square) != (us == WHITE ? 3 : 4)) return one;
    const Bitboard capturers = Beside(SquareBit(square)) & position.Men[position.SideToMove][PAWN];
    return capturers != 0 ? one : one | (SquareBit(square - 2 * ahead) & empty);
}

Bitboard DoubleStepCandidates(const TablePosition& position) {
    const int us = position.SideToMove, ahead = Ahead(us);
    const Bitboard pawns = position.Men[us][PAWN];
    if (pawns == 0) return 0;
    Bitboard candidates = position.Men[ChangeSide(us)][PAWN] & RelativeRankBits(us, 4) & Beside(pawns);
    const Bitboard occupied = AllOccupied(position);
    for (Bitboard rest = candidates; rest != 0;) {
        const int square = PopLowest(rest);
        const Bitboard passed = SquareBit(square + ahead) | SquareBit(square + 2 * ahead);
        if (occupied & passed) candidates ^= SquareBit(square);
    }
    return candidates;
}

TableValue ValueWithoutMoves(const TablePosition& position) {
    const int us = position.SideToMove, them = ChangeSide(us);
    return IsAttacked(position, position.King(us), them, AllOccupied(position)) ? MatedIn(0) : TABLE_DRAW;
}

bool IsSymmetric(const TablePosition& position) {
    for (const int side : {WHITE, BLACK}) {
        for (const unsigned piece : {KING, QUEEN, ROOK, BISHOP, KNIGHT}) {
            const Bitboard men = position.Men[side][piece];
            if (men != FlipDiagonal(men)) return false;
        }
        if (position.Men[side][PAWN] != 0) return false;
    }
    return true;
}
