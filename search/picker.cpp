#include "search/picker.h"

#include "core/board.h"
#include "core/evasions.h"
#include "core/movegen.h"
#include "core/movelist.h"
#include "core/movetest.h"
#include "eval/pawnsets.h"
#include "search/parameters.h"
#include "search/plyinfo.h"

MovePicker::MovePicker(const Node& node) : node_(node), start_(MoveListTop), next_(MoveListTop) {
    if (!node.IsInCheck) {
        stage_ = HASH_MOVE;
        FindKillers();
        return;
    }
    stage_ = EVASIONS;
    GenerateEvasions();
    capturesEnd_ = MoveListTop;
    for (int i = start_; i < capturesEnd_; ++i) {
        if (MoveList[i].Move == node.HashMove) MoveList[i].Score = HASH_MOVE_SCORE;
    }
}

MovePicker::~MovePicker() {
    MoveListTop = start_;
}

void MovePicker::FindKillers() {
    const PlyRecord& record = PlyInfo[Ply];
    const int side = board.SideToMove;
    const Move candidates[] = {record.Killer1[side], record.Killer2[side]};
    for (int i = 0; i < 2; ++i) {
        const Move move = candidates[i];
        if (move != NO_MOVE && move != node_.HashMove && IsPossible(move)) killers_[i] = move;
    }
}

MovePicker::Span MovePicker::Captures() {
    if (capturesEnd_ < 0) {
        GenerateCaptures(board.Occupied[ChangeSide(board.SideToMove)]);
        GeneratePromotions();
        capturesEnd_ = MoveListTop;
    }
    return {start_, capturesEnd_};
}

MovePicker::Span MovePicker::Quiets() {
    const int first = Captures().End;
    if (quietsEnd_ < 0) {
        GenerateQuiet(node_.Selector);
        quietsEnd_ = MoveListTop;
        RateQuiets(first);
    }
    return {first, quietsEnd_};
}

void MovePicker::RateQuiets(int first) {
    const int us = board.SideToMove, them = ChangeSide(us);
    const Bitboard pawns = board.Pieces[PAWN][them];
    const Bitboard reach = them == WHITE ? PawnAttacksOf<WHITE>(pawns) : PawnAttacksOf<BLACK>(pawns);
    Bitboard danger = reach;
    if (!node_.Eval.IsLazy) danger |= node_.Eval.Attacked[them] & ~node_.Eval.Attacked[us];
    for (int i = first; i < quietsEnd_; ++i) {
        const Move move = MoveList[i].Move;
        if (MovePiece(move) == PAWN) continue;
        if ((danger & SquareBit(MoveFrom(move))) != 0) MoveList[i].Score += EscapeBonus;
        if ((reach & SquareBit(MoveTo(move))) != 0) MoveList[i].Score -= PawnReachMalus;
    }
}

bool MovePicker::WasTried(Move move) const {
    return move == node_.HashMove || (stage_ == QUIETS && (move == killers_[0] || move == killers_[1]));
}

// The best of the span from next_ on.
Move MovePicker::NextOf(Span span, int* score) {
    while (next_ < span.End) {
        SelectBestMove(next_, span.End);
        const ScoredMove& entry = MoveList[next_++];
        if (stage_ != EVASIONS && WasTried(entry.Move)) continue;
        *score = entry.Score;
        return entry.Move;
    }
    return NO_MOVE;
}

Move MovePicker::Next(int* score) {
    if (stage_ == EVASIONS) return NextOf(Evasions(), score);
    if (stage_ == HASH_MOVE) {
        stage_ = CAPTURES;
        *score = HASH_MOVE_SCORE;
        if (node_.HashMove != NO_MOVE) return node_.HashMove;
    }
    if (stage_ == CAPTURES) {
        const Move move = NextOf(Captures(), score);
        if (move != NO_MOVE) return move;
        stage_ = KILLERS;
    }
    while (stage_ == KILLERS && killer_ < 2) {
        *score = KILLER_SCORE - killer_;
        const Move move = killers_[killer_++];
        if (move != NO_MOVE) return move;
    }
    stage_ = QUIETS;
    return NextOf(Quiets(), score);
}
