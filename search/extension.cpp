#include "search/extension.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/exchange.h"
#include "core/movescore.h"
#include "search/plyinfo.h"
#include "search/scores.h"
#include "search/statistics.h"

namespace {

// Takes the last piece off the board: kings and pawns remain.
bool LeavesPawnEnding(Move move) {
    const unsigned captured = MoveCaptured(move);
    if (PieceValue[captured] <= PieceValue[PAWN] || MovePromotion(move) != EMPTY) return false;
    return board.PieceMaterial[WHITE] + board.PieceMaterial[BLACK] == PieceUnits[captured];
}

// Takes back what has just taken a man of the same worth.
bool IsRecapture(Move move) {
    const Move last = LastMove();
    return MoveCaptured(last) != EMPTY && MoveTo(last) == MoveTo(move) &&
           PieceValue[MoveCaptured(move)] == PieceValue[MoveCaptured(last)] &&
           !(PlyInfo[Ply - 1].Flags & FLAG_RECAPTURE);
}

bool IsPassedPush(Move move) {
    if (MovePiece(move) != PAWN) return false;
    const int us = board.SideToMove, to = MoveTo(move);
    // The squares beside and before the pawn, on its file and the neighbouring ones.
    Bitboard front = SquareBit(to) | (KingTargets[to] & RankBits(RankOf(to)));
    Bitboard ahead = 0;
    while (front != 0) {
        front = us == WHITE ? front << 8 : front >> 8;
        ahead |= front;
    }
    return (ahead & board.Pieces[PAWN][ChangeSide(us)]) == 0;
}

// Whether the man attacks, from its new square, two pieces that it could win with effect on the score, or one
// that nobody defends when little is missing.
bool AttacksTargets(Move move, const Node& node) {
    const int us = board.SideToMove, them = ChangeSide(us), to = MoveTo(move);
    const unsigned piece = MovePiece(move);
    const Bitboard pieces = board.Occupied[them] & ~board.Pieces[PAWN][them] & ~board.Pieces[KING][them];
    Bitboard victims = AttacksFrom(to, us, piece) & pieces;
    if (victims == 0) return false;
    const int missing = node.Alpha - node.Eval.Score;
    const Bitboard loose = node.Eval.IsLazy ? 0 : ~node.Eval.Attacked[them];
    if (missing < 220 && (victims & loose) != 0) return true;
    int winnable = 0;
    while (victims != 0) {
        const int square = PopLowest(victims);
        const unsigned victim = board.PieceOn[square];
        if (PieceValue[victim] + 120 <= missing) continue;
        winnable += CaptureIsSafe(square, to, piece, victim, EMPTY);
    }
    return winnable >= 2;
}

bool IsThreat(Move move, const Node& node, bool isPassedPush) {
    if (node.IsInCheck) return false;
    const int rank = RankOf(MoveTo(move));
    const int advance = board.SideToMove == WHITE ? rank : 7 - rank;
    if (node.Type == 0 && isPassedPush && advance >= 5) return true;
    return AttacksTargets(move, node);
}

bool IsSafe(const Candidate& candidate) {
    const Move move = candidate.Move;
    if (IsEnPassant(move)) return true;
    if (!IsQuiet(move) && candidate.Score >= SAFE_CAPTURE_SCORE) return true;
    return IsSafeMove(move);
}

}  // namespace

int ComputeExtension(const Node& node, const Candidate& candidate, int* alternative) {
    const Move move = candidate.Move;
    const int whole = node.HasFullExtensions ? PLY_DEPTH : PLY_DEPTH / 2;
    int change = candidate.IsFirst ? 0 : -PLY_DEPTH, cap = 0, flags = 0;
    // 1. What the move is.
    if (LeavesPawnEnding(move)) {
        change += whole;
        cap = PLY_DEPTH;
        flags |= FLAG_PAWN_ENDING;
        Count(STAT_PAWN_ENDINGS);
    }
    if (IsRecapture(move)) {
        change += node.HasFullExtensions ? 45 : 22;
        flags |= FLAG_RECAPTURE;
        Count(STAT_RECAPTURES);
    }
    if (candidate.GivesCheck) {
        change += whole;
        flags |= FLAG_CHECK;
        Count(STAT_CHECKS);
    }
    const bool isPassedPush = IsPassedPush(move);
    if (isPassedPush) {
        flags |= FLAG_PASSED_PUSH;
        Count(STAT_PASSED_PUSHES);
    }
    // 2. What it threatens, where that can still change anything.
    const bool mayGain = change < cap && (node.Type == 0 || node.Depth - PLY_DEPTH + change < PLY_DEPTH);
    const bool mayLose = node.Type != 0 && change <= -PLY_DEPTH;
    const bool isThreat = (mayGain || mayLose) && IsThreat(move, node, isPassedPush);
    const bool isSafe = !(isThreat || mayLose) || IsSafe(candidate);
    if (isThreat && isSafe) {
        flags |= FLAG_THREAT;
        Count(STAT_THREATS);
        if (mayGain) change += whole;
    }
    PlyInfo[Ply].Flags = flags;
    // 3. What is left, and what is searched instead at first when the man may simply be lost.
    change = std::min(change, cap);
    *alternative = change;
    if (mayLose && !isThreat && !candidate.GivesCheck && !isSafe) {
        *alternative -= PLY_DEPTH;
        change = -PLY_DEPTH;
    }
    return change;
}
