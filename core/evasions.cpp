#include "core/evasions.h"

#include <bit>

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/movelist.h"
#include "core/moverules.h"
#include "core/movescore.h"

Check FindCheck(int king) {
    const int us = board.SideToMove;
    Check check{AttackersOf(ChangeSide(us), king), 0, KingTargets[king] & ~board.Occupied[us]};
    for (Bitboard set = check.Checkers; set != 0;) {
        const int checker = PopLowest(set);
        // A step over the edge leads to a square that is not beside the king.
        const int behind = (king + Direction[checker * 64 + king]) & 63;
        if (IsSlider(board.PieceOn[checker])) check.Flights &= ~SquareBit(behind);
    }
    if (std::has_single_bit(check.Checkers)) {
        check.Targets = check.Checkers | BetweenSquares[LowestSquare(check.Checkers) * 64 + king];
    }
    return check;
}

namespace {

void AppendReply(int from, int to, unsigned piece, unsigned promotion = EMPTY) {
    const Move move = BuildMove(from, to, piece, board.PieceOn[to], promotion);
    AppendMove(move, ScoreEvasion(move));
}

// A pawn's reply; on the last rank four promotions, in an order of their own on purpose.
void AppendPawnReply(int from, int to) {
    if (SquareBit(to) & (RANK_1 | RANK_8)) {
        for (const unsigned piece : {QUEEN, ROOK, BISHOP, KNIGHT}) AppendReply(from, to, PAWN, piece);
    } else {
        AppendReply(from, to, PAWN);
    }
}

void AppendKingReplies(int king, Bitboard flights) {
    const int them = ChangeSide(board.SideToMove);
    while (flights != 0) {
        const int to = PopLowest(flights);
        if (!IsSquareAttacked(them, to)) AppendReply(king, to, KING);
    }
}

void AppendPieceReplies(Bitboard targets) {
    const int us = board.SideToMove;
    for (const unsigned piece : {KNIGHT, BISHOP, ROOK, QUEEN}) {
        for (Bitboard men = board.Pieces[piece][us]; men != 0;) {
            const int from = PopLowest(men);
            if (IsPinned(from)) continue;
            for (Bitboard set = AttacksFrom(from, us, piece) & targets; set != 0;) {
                AppendReply(from, PopLowest(set), piece);
            }
        }
    }
}

template <int side>
void AppendPawnSteps(Bitboard targets) {
    constexpr int STEP = PawnStep(side);
    const Bitboard empty = ~AllOccupied(), pawns = board.Pieces[PAWN][side];
    for (Bitboard set = DoubleSteps<side>(pawns, empty) & targets; set != 0;) {
        const int to = PopLowest(set);
        if (!IsPinned(to - 2 * STEP)) AppendPawnReply(to - 2 * STEP, to);
    }
    for (Bitboard set = SingleSteps<side>(pawns, empty) & targets; set != 0;) {
        const int to = PopLowest(set);
        if (!IsPinned(to - STEP)) AppendPawnReply(to - STEP, to);
    }
}

// En passant takes a checking pawn; on a board set up by hand its arrival square may also lie in a checking
// line.
void AppendEnPassantReplies(Bitboard targets) {
    const int victim = DoubleStepSquare();
    if (victim < 0) return;
    const int us = board.SideToMove, file = FileOf(victim);
    const int to = victim + PawnStep(us);
    if (!(targets & (SquareBit(victim) | SquareBit(to)))) return;
    for (const int offset : {-1, 1}) {
        if (file + offset < 0 || file + offset > 7) continue;
        const int from = victim + offset;
        if ((board.Pieces[PAWN][us] & SquareBit(from)) && !IsPinned(from)) AppendReply(from, to, PAWN);
    }
}

void AppendPawnCaptures(int checker) {
    const int us = board.SideToMove;
    Bitboard pawns = PawnCaptures[ChangeSide(us)][checker] & board.Pieces[PAWN][us];
    while (pawns != 0) {
        const int from = PopLowest(pawns);
        if (!IsPinned(from)) AppendPawnReply(from, checker);
    }
}

}  // namespace

void GenerateEvasions() {
    const int king = static_cast<int>(board.KingSquare[board.SideToMove]);
    const Check check = FindCheck(king);
    AppendKingReplies(king, check.Flights);
    if (check.Targets == 0) return;
    const int checker = LowestSquare(check.Checkers);
    AppendPieceReplies(check.Targets);
    board.SideToMove == WHITE ? AppendPawnSteps<WHITE>(check.Targets) : AppendPawnSteps<BLACK>(check.Targets);
    AppendEnPassantReplies(check.Targets);
    AppendPawnCaptures(checker);
}
