#include "eval/smallpawncounts.h"

#include "eval/endingview.h"
#include "eval/evaluate.h"
#include "eval/weights.h"

namespace {

constexpr int MINOR_UNITS = 3;
constexpr int ROOK_UNITS = 5;

bool HaveUnits(const EndingView& view, int units) {
    return view.Units(view.Strong) == units && view.Units(view.Weak) == units;
}

// Whether the defending king stands on the pawn's way where the strong side's piece can't drive it off: a
// bishop not of the square's colour, or a knight, which may, but seldom does.
bool IsBlockedForGood(const EndingView& view) {
    const int pawn = view.FirstPawn(), king = view.WeakKing;
    if (FileOf(king) != FileOf(pawn) || RankOf(king) < RankOf(pawn)) return false;
    if (view.Count(BISHOP, view.Strong) == 0) return true;
    return IsLightSquare(view.SquareOf(BISHOP, view.Strong)) != IsLightSquare(king);
}

// Whether the king stands on the pawn's file or beside it.
bool IsBeside(int king, int pawn) {
    return std::abs(FileOf(king) - FileOf(pawn)) <= 1;
}

// With the defending king before the pawn: the third rank, as the defender counts it, can't be crossed by the
// attacker's king before the pawn is on it; when it is, the rook gives checks from behind.
bool IsThirdRankHeld(const EndingView& view) {
    constexpr int THIRD_RANK = 5;  // as the attacker counts
    const int rook = view.SquareOf(ROOK, view.Weak), pawn = view.FirstPawn();
    return RankOf(rook) == THIRD_RANK && RankOf(pawn) < THIRD_RANK && RankOf(view.StrongKing) < THIRD_RANK;
}

// A rook that has to stay before its pawn on the seventh rank at the edge, with the enemy rook behind them
// and the enemy king on the two far files, out of its checks: whenever the own king comes, it is checked
// away.
bool IsRookBuried(const EndingView& view) {
    const int pawn = view.FirstPawn(), flip = FileOf(pawn) > 3 ? 7 : 0, file = FileOf(pawn ^ flip);
    const int king = view.WeakKing ^ flip, enemyRook = view.SquareOf(ROOK, view.Weak);
    const bool isBehind = FileOf(enemyRook ^ flip) == file && RankOf(enemyRook) < 6;
    const bool isKingOut = RankOf(king) == 6 && FileOf(king) >= 6;
    return file <= 1 && RankOf(pawn) == 6 && view.SquareOf(ROOK, view.Strong) == pawn + 8 && isBehind &&
           isKingOut && Distance(view.StrongKing, pawn) >= 2;
}

int RookPawnFactor(int file) {
    if (file == 0 || file == 7) return RookEndingRookPawnFactor;
    return file == 1 || file == 6 ? RookEndingKnightPawnFactor : RookEndingCentreFactor;
}

}  // namespace

// Without the pawn, the leader would have to win with pieces alone: the other side gives a minor for it. Then
// a lead of more than a minor wins, except with two knights.
int ScaleOnePawn(int score) {
    const EndingView view(LeaderOf(score));
    const int lead = view.Units(view.Strong) - view.Units(view.Weak);
    const bool isTwoKnights =
        view.Units(view.Strong) == 2 * MINOR_UNITS && view.Count(KNIGHT, view.Strong) == 2;
    if (view.Count(PAWN, view.Strong) == 0) {
        return lead <= MINOR_UNITS || isTwoKnights ? ScaleScore(score, LastPawnFactor) : score;
    }
    const int enough = isTwoKnights ? MINOR_UNITS : 0;
    if (board.MinorCount[view.Weak] == 0 || lead > enough) return score;
    score = ScaleScore(score, LastPawnFactor);
    const bool isBlocked = HaveUnits(view, MINOR_UNITS) && IsBlockedForGood(view);
    return isBlocked ? ScaleScore(score, LastPawnBlockedFactor) : score;
}

int ScaleThreePawns(int score) {
    const EndingView view(LeaderOf(score));
    const int pawns = view.Count(PAWN, view.Strong), lead = view.Units(view.Strong) - view.Units(view.Weak);
    if (pawns == 2 && HaveUnits(view, ROOK_UNITS)) {
        return AreAllPawnsOnOneWing() ? ScaleScore(score, ThreePawnsRookFactor) : score;
    }
    if (view.Units(view.Strong) != MINOR_UNITS) return score;
    const bool isEven = pawns == 2 && lead == 0 && AreAllPawnsOnOneWing();
    const bool isLastPawn = pawns == 1 && lead == MINOR_UNITS;
    return isEven || isLastPawn ? ScaleScore(score, ThreePawnsMinorFactor) : score;
}

int ScaleRookAndPawn(int score) {
    const int pawnSide = board.PieceNumber[PAWN][WHITE] == 1 ? WHITE : BLACK;
    const EndingView view(pawnSide);
    const bool isSinglePawn = view.Count(PAWN, view.Strong) == 1 && view.Count(PAWN, view.Weak) == 0;
    if (!isSinglePawn || !HaveUnits(view, ROOK_UNITS)) return score;
    const int pawn = view.FirstPawn(), file = FileOf(pawn), rank = RankOf(pawn);
    if (IsRookBuried(view))
        return ScaleScore(ScaleScore(score, RookPawnFactor(file)), RookEndingUnsupportedFactor);
    if (!IsBeside(view.WeakKing, pawn) || RankOf(view.WeakKing) <= rank) return score;
    score = ScaleScore(score, RookPawnFactor(file));
    const bool isSupported = IsBeside(view.StrongKing, pawn) && RankOf(view.StrongKing) >= rank;
    if (!isSupported) score = ScaleScore(score, RookEndingUnsupportedFactor);
    return IsThirdRankHeld(view) ? ScaleScore(score, RookEndingThirdRankFactor) : score;
}
