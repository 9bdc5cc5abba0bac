#pragma once

#include "egtb/tableposition.h"
#include "egtb/tablevalue.h"

// Moves and moves taken back, for whoever makes or checks tables.

struct TableMove {
    int From, To;
    bool LeavesClass;  // a capture or a promotion
    unsigned Promotion = EMPTY;
};

// The position after a move of the side to move, which need not leave its king safe. A double step is noted
// where it can be captured.
TablePosition AfterMove(const TablePosition& position, unsigned piece, const TableMove& move);

// Where a pawn of the side to move can go, and from where one of the other side can have come without taking
// anything or having been able to be taken en passant.
Bitboard PawnTargets(const TablePosition& position, int square);
Bitboard PawnOrigins(const TablePosition& position, int square);

// The squares of the opponent's pawns whose last move may have been a double step that can be captured.
Bitboard DoubleStepCandidates(const TablePosition& position);

// The value of a position whose side to move has no move: mate or stalemate.
TableValue ValueWithoutMoves(const TablePosition& position);

// Whether the diagonal from a1 to h8 mirrors the position to itself.
bool IsSymmetric(const TablePosition& position);

// Whether a move's mirror image on that diagonal comes before it. From a symmetric position both lead to the
// same, and are counted once.
constexpr bool IsSecondImage(int from, int to) {
    const int mirroredFrom = FlipDiagonal(from), mirroredTo = FlipDiagonal(to);
    return mirroredFrom != from ? mirroredFrom < from : mirroredTo < to;
}

// Calls visit(move, position after it) for every legal move.
template <typename Visit>
void VisitMoves(const TablePosition& position, Visit visit) {
    const int us = position.SideToMove, them = ChangeSide(us);
    const Bitboard own = OccupiedBy(position, us), others = OccupiedBy(position, them);
    const auto visitMove = [&](unsigned piece, const TableMove& move) {
        const TablePosition after = AfterMove(position, piece, move);
        if (!IsAttacked(after, after.King(us), them, AllOccupied(after))) visit(move, after);
    };
    for (const unsigned piece : {KING, QUEEN, ROOK, BISHOP, KNIGHT}) {
        for (Bitboard men = position.Men[us][piece]; men != 0;) {
            const int from = PopLowest(men);
            for (Bitboard targets = TableAttacks(piece, from, own | others) & ~own; targets != 0;) {
                const int to = PopLowest(targets);
                visitMove(piece, {from, to, (others & SquareBit(to)) != 0});
            }
        }
    }
    for (Bitboard men = position.Men[us][PAWN]; men != 0;) {
        const int from = PopLowest(men);
        for (Bitboard targets = PawnTargets(position, from); targets != 0;) {
            const int to = PopLowest(targets);
            if (SquareBit(to) & (RANK_1 | RANK_8)) {
                for (const unsigned promotion : {QUEEN, ROOK, BISHOP, KNIGHT}) {
                    visitMove(PAWN, {from, to, true, promotion});
                }
            } else {
                visitMove(PAWN, {from, to, FileOf(from) != FileOf(to)});
            }
        }
    }
}

// Calls visit(from, to, position before) for every move that stays in the class and can have led here, though
// it may have been played out of an unplayable position. A position before that may have come about by a
// double step is visited once for each, too.
template <typename Visit>
void VisitUnmoves(const TablePosition& position, Visit visit) {
    const int us = ChangeSide(position.SideToMove);
    const Bitboard occupied = AllOccupied(position);
    const bool afterDoubleStep = position.DoubleStep >= 0;
    const auto visitOrigins = [&](unsigned piece, int to, Bitboard origins) {
        TablePosition before = position;
        before.SideToMove = us;
        before.DoubleStep = -1;
        while (origins != 0) {
            const int from = PopLowest(origins);
            before.Men[us][piece] = (position.Men[us][piece] ^ SquareBit(to)) | SquareBit(from);
            visit(from, to, before);
            for (Bitboard steps = DoubleStepCandidates(before); steps != 0; before.DoubleStep = -1) {
                before.DoubleStep = PopLowest(steps);
                visit(from, to, before);
            }
        }
    };
    if (afterDoubleStep) {
        const int back = us == WHITE ? -16 : 16;
        visitOrigins(PAWN, position.DoubleStep, SquareBit(position.DoubleStep + back));
        return;
    }
    for (const unsigned piece : {KING, QUEEN, ROOK, BISHOP, KNIGHT}) {
        for (Bitboard men = position.Men[us][piece]; men != 0;) {
            const int to = PopLowest(men);
            visitOrigins(piece, to, TableAttacks(piece, to, occupied) & ~occupied);
        }
    }
    for (Bitboard men = position.Men[us][PAWN]; men != 0;) {
        const int to = PopLowest(men);
        visitOrigins(PAWN, to, PawnOrigins(position, to));
    }
}
