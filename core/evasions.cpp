#include "core/evasions.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/movelist.h"
#include "core/movescore.h"

namespace {

// What a check demands of the replies.
struct Check {
    Bitboard Checkers;
    Bitboard Targets = 0;   // where a man other than the king ends the check; empty in double check
    int Lines[2] = {0, 0};  // steps from checking sliders toward the king, 0 for none
};

Check FindCheck(int king) {
    Check check{AttackersOf(ChangeSide(board.SideToMove), king)};
    if (check.Checkers == 0) return check;
    const int high = HighestSquare(check.Checkers), low = LowestSquare(check.Checkers);
    const auto lineOf = [&](int checker) {
        return IsSlider(board.PieceOn[checker]) ? Direction[checker * 64 + king] : 0;
    };
    check.Lines[0] = lineOf(high);
    if (high != low) {
        check.Lines[1] = lineOf(low);
    } else {
        check.Targets = check.Checkers;
        if (check.Lines[0] != 0) check.Targets |= BetweenSquares[high * 64 + king];
    }
    return check;
}

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

void AppendKingReplies(int king, const Check& check) {
    const int us = board.SideToMove;
    for (Bitboard set = KingTargets[king] & ~board.Occupied[us]; set != 0;) {
        const int to = PopLowest(set);
        if (IsSquareAttacked(ChangeSide(us), to)) continue;
        // The king still shields the square behind it from a slider.
        const int step = Direction[king * 64 + to];
        if (step == check.Lines[0] || step == check.Lines[1]) continue;
        AppendReply(king, to, KING);
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
    constexpr int BACK = side == WHITE ? -8 : 8;
    const Bitboard empty = ~AllOccupied(), pawns = board.Pieces[PAWN][side];
    const Bitboard single = ShiftAhead<side>(pawns) & empty;
    const Bitboard twice =
        ShiftAhead<side>(ShiftAhead<side>(pawns & RelativeRankBits(side, 1)) & empty) & empty;
    for (Bitboard set = twice & targets; set != 0;) {
        const int to = PopLowest(set);
        if (!IsPinned(to + 2 * BACK)) AppendPawnReply(to + 2 * BACK, to);
    }
    for (Bitboard set = single & targets; set != 0;) {
        const int to = PopLowest(set);
        if (!IsPinned(to + BACK)) AppendPawnReply(to + BACK, to);
    }
}

// En passant takes a checking pawn; on a board set up by hand its arrival square may also lie in a checking
// line.
void AppendEnPassantReplies(Bitboard targets) {
    const int victim = DoubleStepSquare();
    if (victim < 0) return;
    const int us = board.SideToMove, file = FileOf(victim);
    const int to = victim + (us == WHITE ? 8 : -8);
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
    AppendKingReplies(king, check);
    if (check.Targets == 0) return;
    const int checker = LowestSquare(check.Checkers);
    AppendPieceReplies(check.Targets);
    board.SideToMove == WHITE ? AppendPawnSteps<WHITE>(check.Targets) : AppendPawnSteps<BLACK>(check.Targets);
    AppendEnPassantReplies(check.Targets);
    AppendPawnCaptures(checker);
}
