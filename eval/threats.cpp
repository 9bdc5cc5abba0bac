#include "eval/threats.h"

#include <algorithm>

#include "core/board.h"
#include "eval/credit.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

// What the side threatens.
template <int side>
struct Threats {
    static constexpr int enemy = 1 - side;

    const Bitboard EnemyPieces =
        board.Occupied[enemy] & ~board.Pieces[PAWN][enemy] & ~board.Pieces[KING][enemy];
    const Bitboard EnemyMinors = board.Pieces[KNIGHT][enemy] | board.Pieces[BISHOP][enemy];
    const Bitboard MinorAttacks = eval_info.attacks[KNIGHT][side] | eval_info.attacks[BISHOP][side];
    // What a pawn defends, or two men against one attacker, is held well.
    const Bitboard WellHeld =
        eval_info.attacks[PAWN][enemy] | (eval_info.attacked_twice[enemy] & ~eval_info.attacked_twice[side]);

    static void CreditEach(Bitboard victims, Score worth) { Credit<side>(worth * CountSquares(victims)); }

    // `worths` by kind of the victim: minor, rook, queen.
    void CreditByVictim(Bitboard attacks, const Scores<3>& worths) const {
        CreditEach(attacks & EnemyMinors, worths[0]);
        CreditEach(attacks & board.Pieces[ROOK][enemy], worths[1]);
        CreditEach(attacks & board.Pieces[QUEEN][enemy], worths[2]);
    }

    // Pieces that a pawn attacks, or will attack when it has stepped ahead without being lost.
    void EvaluatePawnThreats() const {
        CreditByVictim(eval_info.attacks[PAWN][side], ThreatByPawn);
        const Bitboard free = ~AllOccupied();
        const Bitboard second = RelativeRankBits(side, 2);
        Bitboard steps = ShiftAhead<side>(board.Pieces[PAWN][side]) & free;
        steps |= ShiftAhead<side>(steps & second) & free;
        steps &= ~eval_info.attacks[PAWN][enemy] & (eval_info.attacked[side] | ~eval_info.attacked[enemy]);
        const Bitboard victims = PawnAttacksOf<side>(steps) & EnemyPieces & ~eval_info.attacks[PAWN][side];
        CreditEach(victims, ThreatByPush);
    }

    void EvaluatePieceThreats() const {
        // A minor that attacks a minor counts only where that isn't held well.
        CreditEach(MinorAttacks & EnemyMinors & ~WellHeld, ThreatByMinor[0]);
        CreditEach(MinorAttacks & board.Pieces[ROOK][enemy], ThreatByMinor[1]);
        CreditEach(MinorAttacks & board.Pieces[QUEEN][enemy], ThreatByMinor[2]);
        CreditEach(eval_info.attacks[ROOK][side] & EnemyMinors & ~WellHeld, ThreatByRook[0]);
        CreditEach(eval_info.attacks[ROOK][side] & board.Pieces[QUEEN][enemy], ThreatByRook[1]);
        const Bitboard loose = board.Occupied[enemy] & ~eval_info.attacked[enemy];
        CreditEach(eval_info.attacked[side] & loose & EnemyPieces, HangingPiece);
        CreditEach(eval_info.attacked[side] & loose & board.Pieces[PAWN][enemy], HangingPawn);
        CreditEach(eval_info.attacks[KING][side] & ~WellHeld & (EnemyPieces | board.Pieces[PAWN][enemy]),
                   ThreatByKing);
    }

    void EvaluatePins() const {
        const Bitboard pinned = eval_info.pinned[enemy];
        CreditEach(pinned & board.Pieces[KNIGHT][enemy], PinnedPiece[0]);
        CreditEach(pinned & board.Pieces[BISHOP][enemy], PinnedPiece[1]);
        CreditEach(pinned & board.Pieces[ROOK][enemy], PinnedPiece[2]);
        CreditEach(pinned & board.Pieces[QUEEN][enemy], PinnedPiece[3]);
    }

    void Evaluate() const {
        EvaluatePawnThreats();
        EvaluatePieceThreats();
        EvaluatePins();
    }
};

// Safe squares on the centre files of the own half, those behind own pawns twice.
template <int side>
int SpaceOf() {
    const Bitboard half =
        CENTRE_FILES & (RelativeRankBits(side, 1) | RelativeRankBits(side, 2) | RelativeRankBits(side, 3));
    const Bitboard pawns = board.Pieces[PAWN][side];
    const Bitboard safe = half & ~pawns & ~eval_info.attacks[PAWN][1 - side];
    const Bitboard behind = FillAhead<1 - side>(pawns);
    return CountSquares(safe) + CountSquares(safe & behind);
}

// Space is worth the more, the more pieces want it: it counts for every minor and rook beyond three.
template <int side>
int SpaceWorth() {
    const int pieces = static_cast<int>(board.MinorCount[side] + board.PieceNumber[ROOK][side]) - 3;
    return SpaceOf<side>() * Space * std::max(0, pieces) / 8;
}

}  // namespace

void EvaluateThreats() {
    Threats<WHITE>().Evaluate();
    Threats<BLACK>().Evaluate();
}

void EvaluateSpace() {
    eval_info.opening += SpaceWorth<BLACK>() - SpaceWorth<WHITE>();
}
