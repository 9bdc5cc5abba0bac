#include "core/checks.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/exchange.h"
#include "core/movelist.h"
#include "core/moverules.h"
#include "core/movescore.h"
#include "core/movetest.h"

namespace {

// The opponent's king, and what may uncover it.
struct CheckSearch {
    int King;
    int Selector;
    Bitboard Empty;
    Bitboard Discoverers;  // men that alone keep a slider of their own side from giving check
};

template <int side>
Bitboard FindDiscoverers(int king) {
    const Bitboard occupied = AllOccupied();
    Bitboard sliders = board.Occupied[side] & ((board.StraightSliders & StraightRays[king]) |
                                               (board.DiagonalSliders & DiagonalRays[king]));
    Bitboard discoverers = 0;
    while (sliders != 0) {
        const Bitboard between = BetweenSquares[king * 64 + PopLowest(sliders)] & occupied;
        if ((between & (between - 1)) == 0) discoverers |= between;
    }
    return discoverers & board.Occupied[side];
}

template <int side>
void AppendCheck(const CheckSearch& search, Move move, bool isDiscovered) {
    if (!isDiscovered && !IsSafeMove(move)) return;
    AppendMove(move, HistoryCounter(move, search.Selector, side));
}

template <int side, unsigned piece>
void AppendPieceChecks(const CheckSearch& search, Bitboard direct) {
    Bitboard men = board.Pieces[piece][side];
    // Without a square to check from only discoverers matter.
    if ((direct & search.Empty) == 0) men &= search.Discoverers;
    while (men != 0) {
        const int from = PopLowest(men);
        const Bitboard targets = AttacksFrom(from, side, piece) & search.Empty;
        Bitboard discovering = 0;
        if (search.Discoverers & SquareBit(from)) {
            const int line = Direction[search.King * 64 + from];
            discovering = targets & ~HalfRays[DirectionIndex(line)][search.King];
        }
        for (Bitboard set = (targets & direct) | discovering; set != 0;) {
            const int to = PopLowest(set);
            AppendCheck<side>(search, BuildMove(from, to, piece), (discovering & SquareBit(to)) != 0);
        }
    }
}

template <int side>
void AppendPawnChecks(const CheckSearch& search) {
    const Bitboard pawns = board.Pieces[PAWN][side] & ~RelativeRankBits(side, 6);
    // A pawn before the king on its file stays there.
    const Bitboard discoverers = search.Discoverers & ~FileBits(FileOf(search.King));
    const Bitboard direct = PawnCaptures[side ^ 1][search.King];
    const auto append = [&](Bitboard arrivals, int way) {
        while (arrivals != 0) {
            const int to = PopLowest(arrivals), from = to - way;
            const bool isDiscovered = (discoverers & SquareBit(from)) != 0;
            if (isDiscovered || (direct & SquareBit(to))) {
                AppendCheck<side>(search, BuildMove(from, to, PAWN), isDiscovered);
            }
        }
    };
    const Bitboard uncovering = ShiftAhead<side>(discoverers);
    append(SingleSteps<side>(pawns, search.Empty) & (direct | uncovering), PawnStep(side));
    append(DoubleSteps<side>(pawns, search.Empty) & (direct | ShiftAhead<side>(uncovering)),
           2 * PawnStep(side));
}

template <int side, int step>
void AppendCastlingCheck(const CheckSearch& search) {
    constexpr Move MOVE = BuildMove(KingHome(side), KingHome(side) + 2 * step, KING);
    if (IsCastlingOpen<side, step>() && GivesCheck(MOVE)) AppendCheck<side>(search, MOVE, false);
}

template <int side>
int GenerateQuietChecksOf(int selector) {
    const int king = static_cast<int>(board.KingSquare[side ^ 1]);
    const CheckSearch search{king, selector, ~AllOccupied(), FindDiscoverers<side>(king)};
    const int start = MoveListTop;
    const Bitboard diagonal = DiagonalAttacks(king), straight = StraightAttacks(king);
    AppendCastlingCheck<side, 1>(search);
    AppendCastlingCheck<side, -1>(search);
    AppendPieceChecks<side, KNIGHT>(search, KnightTargets[king]);
    AppendPieceChecks<side, BISHOP>(search, diagonal);
    AppendPawnChecks<side>(search);
    AppendPieceChecks<side, ROOK>(search, straight);
    AppendPieceChecks<side, QUEEN>(search, diagonal | straight);
    AppendPieceChecks<side, KING>(search, KingTargets[king]);
    return MoveListTop - start;
}

}  // namespace

int GenerateQuietChecks(int selector) {
    return board.SideToMove == WHITE ? GenerateQuietChecksOf<WHITE>(selector)
                                     : GenerateQuietChecksOf<BLACK>(selector);
}
