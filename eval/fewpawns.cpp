#include "eval/fewpawns.h"

#include "core/attackquery.h"
#include "eval/bitbase.h"
#include "eval/mating.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

// An advantage that only a mistake of the defender makes good is divided by this.
constexpr int DRAWISH_DIVISOR = 16;

// A pawn of the weak side and its race, as the strong side counts it when on move.
struct Race {
    int Pawn;
    int Promotion;   // the square on which it becomes a queen
    int Steps;       // of the pawn to that square
    int StrongKing;  // steps of the kings: to the promotion square,
    int WeakKing;    // to the pawn

    explicit Race(const EndingView& view)
        : Pawn(view.SquareOf(PAWN, view.Weak)),
          Promotion(FileOf(Pawn)),
          Steps(RankOf(Pawn)),
          StrongKing(Distance(view.StrongKing, Promotion) + (view.IsStrongToMove ? 0 : 1)),
          WeakKing(Distance(view.WeakKing, Pawn) - (view.IsStrongToMove ? 0 : 1)) {}
};

// A win in the end, the surer the nearer the strong king is.
int WinScore(const EndingView& view, const Race& race) {
    return view.Lead() + PieceEndingWin + (7 - race.StrongKing) * DriveKing;
}

// Whether the minor on the square holds the pawn's way: stands on it or attacks it.
bool HoldsWay(int square, unsigned piece, Bitboard way) {
    return ((AttacksFrom(square, WHITE, piece) | SquareBit(square)) & way) != 0;
}

// Whether the minor gets to the pawn's way before it is at its end. With two moves left it mostly does.
bool IsMinorInTime(const EndingView& view, const Race& race) {
    const unsigned piece = view.Count(KNIGHT, view.Strong) > 0 ? KNIGHT : BISHOP;
    const int minor = LowestSquare(board.Pieces[piece][view.Strong]), pawn = view.Seen(race.Pawn);
    const Bitboard way = FileAhead(view.Weak, pawn) | SquareBit(pawn);
    const int moves = race.Steps - (view.IsStrongToMove ? 0 : 1);
    if (moves >= 2 || HoldsWay(minor, piece, way)) return true;
    if (moves == 0) return false;
    for (Bitboard targets = AttacksFrom(minor, WHITE, piece) & ~AllOccupied(); targets != 0;) {
        if (HoldsWay(PopLowest(targets), piece, way)) return true;
    }
    return false;
}

}  // namespace

// A pawn on the seventh rank holds the draw on the a-, c-, f- and h-file, where taking it stalemates, when
// its king is beside it and the queen's king too far away to build a mate.
int QueenAgainstPawn(const EndingView& view) {
    constexpr int TOO_FAR = 5;
    const Race race(view);
    const int win = WinScore(view, race), file = FileOf(race.Pawn);
    const bool isRookFile = file == 0 || file == 7, isBishopFile = file == 2 || file == 5;
    const bool isSupported = Distance(view.WeakKing, race.Pawn) <= 1;
    if (race.Steps > 1 || !isSupported || !(isRookFile || isBishopFile)) return win;
    if (race.StrongKing >= TOO_FAR) return view.Lead() / DRAWISH_DIVISOR;
    return isBishopFile && race.StrongKing == TOO_FAR - 1 ? win / 2 : win;
}

// The rook wins when its king gets before the pawn in time, or when the pawn's king is too far away to help.
int RookAgainstPawn(const EndingView& view) {
    const Race race(view);
    const int win = WinScore(view, race);
    const bool isPromoting = race.Steps == 1 && !view.IsStrongToMove;
    if (race.StrongKing <= race.Steps + 1 || (race.WeakKing >= 3 && !isPromoting)) return win;
    const bool isUnclear = race.StrongKing == race.Steps + 2 || race.Steps > 3;
    return isUnclear ? win / 2 : view.Lead() / DRAWISH_DIVISOR;
}

int MinorAgainstPawn(const EndingView& view) {
    const Race race(view);
    const int turn = view.IsStrongToMove ? WHITE : BLACK;
    if (!IsPawnEndingWon(BLACK, view.WeakKing, view.StrongKing, race.Pawn, turn)) return 0;
    if (IsMinorInTime(view, race)) return -PawnEndingAdvance * (7 - race.Steps) / 4;
    return PieceValue[KNIGHT] - PieceValue[QUEEN] - PieceEndingWin;
}
