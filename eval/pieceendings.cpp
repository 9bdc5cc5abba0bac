#include "eval/pieceendings.h"

#include "eval/evaluate.h"
#include "eval/mating.h"
#include "eval/weights.h"

namespace {

// A lead of less than this, in pawn units, wins nothing without pawns.
constexpr int WINNING_LEAD = 4;

// What minors need: two of them more, a bishop among them. Three against a rook take longer than fifty moves,
// if they win.
constexpr int WINNING_MINOR_LEAD = 6;

bool IsWinningLead(const EndingView& view) {
    const int lead = EndingView::Units(view.Strong) - EndingView::Units(view.Weak);
    if (board.MajorCount[view.Strong] > 0) return lead >= WINNING_LEAD;
    return lead >= WINNING_MINOR_LEAD && view.Count(BISHOP, view.Strong) > 0;
}

}  // namespace

int PieceEndingFactor(const EndingView& view) {
    const bool hasQueen = view.Count(QUEEN, view.Strong) > view.Count(QUEEN, view.Weak);
    const bool hasRook = view.Count(ROOK, view.Strong) > view.Count(ROOK, view.Weak);
    if (hasQueen) return QueenForPiecesFactor;
    if (hasRook) return RookForMinorFactor;
    return board.MajorCount[view.Strong] > 0 ? MinorBesideRookFactor : MinorsOnlyFactor;
}

int PieceEndingScore(const EndingView& view) {
    if (eval_info.cannot_win[view.Strong] || view.Lead() == 0) return 0;
    if (IsWinningLead(view)) return view.Lead() + PieceEndingWin + DriveScore(view);
    // Nearly a draw, but the defender can still go wrong: better at the edge than in the middle.
    return ScaleScore(view.Lead() / 4 + DriveScore(view) / 8, PieceEndingFactor(view));
}
