#include <algorithm>

#include "eval/endings.h"
#include "eval/endingview.h"
#include "eval/evaluate.h"
#include "eval/pawnsets.h"
#include "eval/pieceendings.h"
#include "eval/smallpawncounts.h"
#include "eval/weights.h"

namespace {

constexpr int FEW_UNITS = 11;  // pieces of a side up to which the material alone may be drawish
constexpr int NEAR_UNITS = 2;  // a difference that a pawn outweighs
constexpr int FEW_PAWNS = 4;   // of both sides
constexpr int WING_PAWNS = 7;  // on one wing

int PawnCount(int side) {
    return EndingView::Count(PAWN, side);
}
int Units(int side) {
    return EndingView::Units(side);
}

// The ranks beyond a square as the enemy of the king on it sees them: where pawns stand before that king.
Bitboard BeforeKing(int side, int king) {
    const Bitboard below = (Bitboard{1} << (king & 56)) - 1;
    return side == BLACK ? below : ~(below | RankBits(RankOf(king)));
}

// Whether all pawns of the king's enemy, at least one, stand on its file or beside it and before it.
bool AreAllPawnsBefore(int side) {
    const int king = static_cast<int>(board.KingSquare[side]);
    const Bitboard pawns = board.Pieces[PAWN][ChangeSide(side)];
    return pawns != 0 && (pawns & ~(FilesAround(FileOf(king)) & BeforeKing(side, king))) == 0;
}

int ScalePawnsBeforeKing(int score) {
    const int leader = LeaderOf(score), other = ChangeSide(leader);
    const bool isHeld = Units(other) >= Units(leader) && AreAllPawnsBefore(other);
    return isHeld ? ScaleScore(score, PawnsBeforeKingFactor) : score;
}

bool AreBishopsOpposite() {
    const Bitboard bishops = board.Pieces[BISHOP][WHITE] | board.Pieces[BISHOP][BLACK];
    const bool isOneEach = board.PieceNumber[BISHOP][WHITE] == 1 && board.PieceNumber[BISHOP][BLACK] == 1;
    return isOneEach && CountSquares(bishops & LIGHT_SQUARES) == 1;
}

int ScaleOppositeBishops(int score) {
    score = ScaleScore(score, OppositeBishopsFactor);
    const bool areAlone = Units(WHITE) == PieceUnits[BISHOP] && Units(BLACK) == PieceUnits[BISHOP];
    const bool isClose = std::abs(PawnCount(WHITE) - PawnCount(BLACK)) <= 2;
    return areAlone && isClose ? ScaleScore(score, OppositeBishopsAloneFactor) : score;
}

// Even pieces and a pawn more at most.
int ScaleFewPawns(int score) {
    const int leader = LeaderOf(score), other = ChangeSide(leader);
    const int pawns = PawnCount(leader) + PawnCount(other);
    if (PawnCount(leader) - PawnCount(other) > 1) return score;
    if (pawns <= WING_PAWNS && AreAllPawnsOnOneWing()) return ScaleScore(score, OneWingFactor);
    return pawns <= FEW_PAWNS ? ScaleScore(score, FewPawnsFactor) : score;
}

// Without any pawn a lead of a minor piece or less wins nothing.
int ScalePawnless(int score) {
    const EndingView view(LeaderOf(score));
    const int lead = Units(view.Strong) - Units(view.Weak);
    return lead <= static_cast<int>(PieceUnits[KNIGHT]) ? ScaleScore(score, PieceEndingFactor(view)) : score;
}

int ScaleByPieces(int score) {
    const int pawns = PawnCount(WHITE) + PawnCount(BLACK);
    if (pawns == 0) return ScalePawnless(score);
    if (AreBishopsOpposite() && Units(WHITE) == Units(BLACK)) return ScaleOppositeBishops(score);
    // What stands on a single pawn or three has been judged by their number.
    if (pawns == 1 || pawns == 3) return score;
    const bool areFew = std::max(Units(WHITE), Units(BLACK)) <= FEW_UNITS;
    const bool areNear = std::abs(Units(WHITE) - Units(BLACK)) <= NEAR_UNITS;
    return areFew && areNear ? ScaleFewPawns(score) : score;
}

}  // namespace

int ClampNoWin(int score) {
    const bool isVain = score > 0 ? eval_info.cannot_win[BLACK] : score < 0 && eval_info.cannot_win[WHITE];
    return isVain ? 0 : score;
}

int ScaleDrawishMaterial(int score) {
    if (score == 0) return 0;
    const int pawns = PawnCount(WHITE) + PawnCount(BLACK);
    if (pawns == 3) score = ScaleThreePawns(score);
    if (pawns == 1) score = ScaleOnePawn(score);
    // What scaling has brought down to 0 favours nobody any more.
    if (score != 0) score = ScalePawnsBeforeKing(score);
    if (ClampNoWin(score) == 0) return 0;
    return ScaleByPieces(ScaleRookAndPawn(score));
}
