#include "eval/attacksets.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/pawnsets.h"

Bitboard AttacksBySquare[64];

namespace {

template <int side>
struct SideAttacks {
    Bitboard Once = 0, Twice = 0;

    void Add(unsigned piece, Bitboard attacks) {
        eval_info.attacks[piece][side] |= attacks;
        Twice |= Once & attacks;
        Once |= attacks;
    }

    template <unsigned piece>
    void AddPieces() {
        for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
            const int square = PopLowest(men);
            Add(piece, AttacksBySquare[square] = AttacksFrom(square, side, piece));
        }
    }

    void Build() {
        const Bitboard ahead = ShiftAhead<side>(board.Pieces[PAWN][side]);
        Add(PAWN, ShiftToH(ahead));
        Add(PAWN, ShiftToA(ahead));
        AddPieces<KING>();
        AddPieces<KNIGHT>();
        AddPieces<BISHOP>();
        AddPieces<ROOK>();
        AddPieces<QUEEN>();
        eval_info.attacked[side] = Once;
        eval_info.attacked_twice[side] = Twice;
    }
};

// The men of the side that stand alone between their king and a slider.
Bitboard PinnedMen(int side) {
    const int king = static_cast<int>(board.KingSquare[side]);
    const Bitboard occupied = AllOccupied();
    Bitboard pinned = 0;
    for (Bitboard sliders = board.Occupied[ChangeSide(side)] & ((StraightRays[king] & board.StraightSliders) |
                                                                (DiagonalRays[king] & board.DiagonalSliders));
         sliders != 0;) {
        const Bitboard between = BetweenSquares[king * 64 + PopLowest(sliders)] & occupied;
        if (CountSquares(between) == 1) pinned |= between;
    }
    return pinned & board.Occupied[side];
}

}  // namespace

void BuildAttackSets() {
    SideAttacks<WHITE>().Build();
    SideAttacks<BLACK>().Build();
    for (const int side : {WHITE, BLACK}) eval_info.pinned[side] = PinnedMen(side);
}
