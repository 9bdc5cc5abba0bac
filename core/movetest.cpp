#include "core/movetest.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/evasions.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/moverules.h"

namespace {

// Whether the man on `to`, having come from `from`, attacks the king of the other side.
bool AttacksKing(unsigned piece, int from, int to, int king) {
    switch (piece) {
        case KNIGHT:
            return (KnightTargets[to] & SquareBit(king)) != 0;
        case PAWN:
            return (PawnCaptures[board.SideToMove][to] & SquareBit(king)) != 0;
        case KING:
            return (KingTargets[to] & SquareBit(king)) != 0;
        default: {
            const int step = Direction[king * 64 + to];
            if (step == 0) return false;
            if (!(IsStraightStep(step) ? IsStraightSlider(piece) : IsDiagonalSlider(piece))) return false;
            return !(BetweenSquares[king * 64 + to] & AllOccupied() & ~SquareBit(from));
        }
    }
}

constexpr bool IsPromotionPiece(unsigned piece) {
    return piece == KNIGHT || piece == ROOK || piece == BISHOP || piece == QUEEN;
}

// Whether a pawn of the side to move may go from square to square, whatever it takes or becomes.
template <int side>
bool IsPawnMove(int from, int to) {
    if (PawnCaptures[side][from] & SquareBit(to)) {
        if (board.PieceOn[to] != EMPTY) return true;
        const int victim = DoubleStepSquare();
        return victim >= 0 && to == victim + PawnStep(side);
    }
    const Bitboard empty = ~AllOccupied(), pawn = SquareBit(from);
    return ((SingleSteps<side>(pawn, empty) | DoubleSteps<side>(pawn, empty)) & SquareBit(to)) != 0;
}

template <int side>
bool IsKingMove(int from, int to) {
    if (KingTargets[from] & SquareBit(to)) return true;
    if (from != KingHome(side)) return false;
    if (to == from + 2) return IsCastlingOpen<side, 1>();
    return to == from - 2 && IsCastlingOpen<side, -1>();
}

template <int side>
bool IsPossibleFor(Move move) {
    const int from = MoveFrom(move), to = MoveTo(move);
    const unsigned piece = MovePiece(move), promotion = MovePromotion(move);
    if (piece == EMPTY || !HasMan(from, side, piece)) return false;
    if (MoveCaptured(move) != board.PieceOn[to] || (board.Occupied[side] & SquareBit(to))) return false;
    if (piece == PAWN) {
        const bool isPromotion = (SquareBit(to) & (RANK_1 | RANK_8)) != 0;
        return isPromotion == IsPromotionPiece(promotion) && (isPromotion || promotion == EMPTY) &&
               IsPawnMove<side>(from, to);
    }
    if (promotion != EMPTY) return false;
    if (piece == KING) return IsKingMove<side>(from, to);
    return (AttacksFrom(from, side, piece) & SquareBit(to)) != 0;
}

// Whether a man other than the king can take the lone checker or step between.
template <int side>
bool CanAnswerCheck(const Check& check) {
    const Bitboard pawns = board.Pieces[PAWN][side];
    const auto hasFreeMan = [](Bitboard men) {
        while (men != 0) {
            if (!IsPinned(PopLowest(men))) return true;
        }
        return false;
    };
    for (Bitboard set = check.Targets; set != 0;) {
        const int to = PopLowest(set);
        const Bitboard barred =
            check.Checkers & SquareBit(to) ? board.Pieces[KING][side] : board.Pieces[KING][side] | pawns;
        if (hasFreeMan(AttackersOf(side, to) & ~barred)) return true;
    }
    const Bitboard empty = ~AllOccupied();
    const Bitboard single = SingleSteps<side>(pawns, empty) & check.Targets;
    const Bitboard twice = DoubleSteps<side>(pawns, empty) & check.Targets;
    const Bitboard steppers = ShiftAhead<side ^ 1>(single | ShiftAhead<side ^ 1>(twice));
    if (hasFreeMan(steppers)) return true;

    const int victim = DoubleStepSquare();
    if (victim < 0) return false;
    const int to = victim + PawnStep(side);
    if (!(check.Targets & (SquareBit(victim) | SquareBit(to)))) return false;
    for (Bitboard men = PawnCaptures[side ^ 1][to] & pawns; men != 0;) {
        if (LeavesKingSafe(BuildMove(PopLowest(men), to, PAWN))) return true;
    }
    return false;
}

}  // namespace

bool GivesCheck(Move move) {
    const int us = board.SideToMove, them = ChangeSide(us);
    if (IsEnPassant(move)) [[unlikely]] {
        MakeMove(move, 1);
        const bool isCheck = IsKingAttacked(them);
        UnmakeMove();
        return isCheck;
    }
    const int king = static_cast<int>(board.KingSquare[them]), from = MoveFrom(move), to = MoveTo(move);
    const unsigned promotion = MovePromotion(move), piece = promotion != EMPTY ? promotion : MovePiece(move);
    if (AttacksKing(piece, from, to, king)) return true;
    const int line = Direction[king * 64 + from];
    if (line != 0 && line != Direction[king * 64 + to] && IsLoneBlocker(king, from, us)) return true;
    if (piece != KING || (to != from + 2 && to != from - 2)) return false;
    return AttacksKing(ROOK, from, (from + to) / 2, king);
}

bool IsPossible(Move move) {
    if (move >> 21 != 0) return false;
    return board.SideToMove == WHITE ? IsPossibleFor<WHITE>(move) : IsPossibleFor<BLACK>(move);
}

bool KeepsKingSafe(Move move) {
    const int us = board.SideToMove, from = MoveFrom(move), to = MoveTo(move);
    if (MovePiece(move) == KING) return !IsSquareAttacked(ChangeSide(us), to);
    if (IsEnPassant(move)) [[unlikely]]
        return LeavesKingSafe(move);
    const int king = static_cast<int>(board.KingSquare[us]);
    const int line = Direction[king * 64 + from];
    return line == 0 || line == Direction[king * 64 + to] || !IsPinned(from);
}

bool HasLegalReply() {
    const int us = board.SideToMove, king = static_cast<int>(board.KingSquare[us]);
    const Check check = FindCheck(king);
    for (Bitboard set = check.Flights; set != 0;) {
        if (!IsSquareAttacked(ChangeSide(us), PopLowest(set))) return true;
    }
    if (check.Targets == 0) return false;
    return us == WHITE ? CanAnswerCheck<WHITE>(check) : CanAnswerCheck<BLACK>(check);
}
