#include "eval/mating.h"

#include <algorithm>
#include <cstdlib>

#include "core/attacks.h"
#include "eval/bitbase.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

// 0 on the two middle files or ranks, 3 on the outer ones.
int EdgeStep(int line) {
    return std::max(3 - line, line - 4);
}

int Nearness(const EndingView& view) {
    return (7 - Distance(view.StrongKing, view.WeakKing)) * DriveKing;
}

// Bishop and knight mate in the bishop's corners only. The knight must be near, to hold the king at the edge.
int CornerDriveScore(const EndingView& view) {
    const int file = FileOf(view.WeakKing), rank = RankOf(view.WeakKing);
    const bool isLight = IsLightSquare(view.SquareOf(BISHOP, view.Strong));
    const int toCorner = isLight ? std::abs(file - rank) : std::abs(7 - file - rank);
    const int knightSteps = 7 - Distance(view.SquareOf(KNIGHT, view.Strong), view.WeakKing);
    return toCorner * DriveCorner + Nearness(view) + knightSteps * DriveKing / 2;
}

// Whether the strong side's pieces mate without the help of a pawn.
bool HasMatingPieces(int side) {
    const int knights = EndingView::Count(KNIGHT, side), bishops = EndingView::Count(BISHOP, side);
    return board.MajorCount[side] > 0 || (bishops > 0 && knights > 0) || HasBishopPair(side) || knights > 2;
}

bool IsBishopAndKnight(int side) {
    return EndingView::Units(side) == 6 && EndingView::Count(BISHOP, side) == 1 &&
           EndingView::Count(KNIGHT, side) == 1;
}

int MatingScore(const EndingView& view) {
    const bool isCornerMate = IsBishopAndKnight(view.Strong) && view.Count(PAWN, view.Strong) == 0;
    return view.Lead() + MatingWin + (isCornerMate ? CornerDriveScore(view) : DriveScore(view));
}

// A knight can't drive a king out of the corner before a pawn on the seventh rank: to defend the pawn its own
// king must take away the last squares.
bool IsKnightHeldOff(const EndingView& view) {
    if (view.Units(view.Strong) != 3 || view.Count(KNIGHT, view.Strong) != 1) return false;
    if (view.Count(PAWN, view.Strong) != 1) return false;
    const int pawn = view.FirstPawn(), file = FileOf(pawn);
    return RankOf(pawn) == 6 && (file == 0 || file == 7) && Distance(view.WeakKing, pawn + 8) <= 1;
}

// Whether some pawn goes through with nothing but its king's help.
bool IsPawnWinning(const EndingView& view) {
    Bitboard pawns = board.Pieces[PAWN][view.Strong];
    while (pawns != 0) {
        const int pawn = view.Seen(PopLowest(pawns));
        if (IsPawnEndingWon(WHITE, view.StrongKing, view.WeakKing, pawn, view.IsStrongToMove ? WHITE : BLACK))
            return true;
    }
    return false;
}

int PawnsScore(const EndingView& view) {
    return view.Lead() + MatingWin + RankOf(view.FirstPawn()) * PawnEndingAdvance;
}

// Pawns on two files or more that the bare king can't begin to take: one of them goes through.
bool ArePawnsTooMany(const EndingView& view) {
    const Bitboard pawns = board.Pieces[PAWN][view.Strong];
    const Bitboard held = KingTargets[view.Seen(view.StrongKing)];
    const Bitboard reach = view.IsStrongToMove ? 0 : KingTargets[view.Seen(view.WeakKing)];
    const bool isOneFile = (pawns & ~FileBits(FileOf(LowestSquare(pawns)))) == 0;
    return !isOneFile && (pawns & reach & ~held) == 0;
}

int PawnsAloneScore(const EndingView& view) {
    if (IsPawnWinning(view)) return PawnsScore(view);
    if (view.Count(PAWN, view.Strong) == 1 || IsCornerHeld(view)) return 0;
    return ArePawnsTooMany(view) ? PawnsScore(view) : UNKNOWN_ENDING;
}

int WithPawnsScore(const EndingView& view) {
    if (EndingView::Units(view.Strong) == 0) return PawnsAloneScore(view);
    if (IsCornerHeld(view) || IsKnightHeldOff(view)) return 0;
    if (HasMatingPieces(view.Strong)) return MatingScore(view);
    return IsPawnWinning(view) ? PawnsScore(view) : UNKNOWN_ENDING;
}

// Whether an enemy pawn stands in the way of the first pawn.
bool IsFirstPawnBlocked(const EndingView& view) {
    const Bitboard ahead = FileAhead(view.Strong, view.Seen(view.FirstPawn()));
    return (board.Pieces[PAWN][view.Weak] & ahead) != 0;
}

// Whether the weak king is beside the corner already, where nothing drives it off, or gets there before the
// strong king and the pawn. Of all placings of a bishop and a pawn this fits all but one in a thousand.
bool GetsToCorner(const EndingView& view, int corner) {
    const int distance = Distance(view.WeakKing, corner), steps = distance + view.IsStrongToMove;
    const int pawnSteps = 7 - RankOf(view.FirstPawn());
    const bool isFasterThanPawn = steps < pawnSteps || IsFirstPawnBlocked(view);
    return distance <= 1 || (isFasterThanPawn && steps < Distance(view.StrongKing, corner));
}

}  // namespace

int DriveScore(const EndingView& view) {
    const int edge = EdgeStep(FileOf(view.WeakKing)) + EdgeStep(RankOf(view.WeakKing));
    return edge * DriveEdge + Nearness(view);
}

int BareKingScore(const EndingView& view) {
    if (view.Count(PAWN, view.Strong) > 0) return WithPawnsScore(view);
    return HasMatingPieces(view.Strong) ? MatingScore(view) : 0;
}

bool IsCornerHeld(const EndingView& view) {
    const Bitboard pawns = board.Pieces[PAWN][view.Strong], bishops = board.Pieces[BISHOP][view.Strong];
    const bool isOnA = (pawns & ~FileBits(0)) == 0, isOnH = (pawns & ~FileBits(7)) == 0;
    if (isOnA == isOnH) return false;  // no pawn at all, or pawns elsewhere
    const int corner = view.Seen(isOnA ? A8 : H8);
    if (view.Units(view.Strong) != 3 * CountSquares(bishops)) return false;
    const Bitboard cornerColour = IsLightSquare(corner) ? LIGHT_SQUARES : ~LIGHT_SQUARES;
    if ((bishops & cornerColour) != 0) return false;
    const Bitboard captures = FileBits(isOnA ? 1 : 6);
    if (view.Units(view.Weak) != 0 || (board.Pieces[PAWN][view.Weak] & captures) != 0) return false;
    return GetsToCorner(view, isOnA ? A8 : H8);
}
