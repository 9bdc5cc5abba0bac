#include "core/movegen.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/moverules.h"
#include "core/movescore.h"

int KingAttackCount[2];

namespace {

void AppendCapture(int from, int to, unsigned piece, unsigned promotion = EMPTY) {
    const Move move = BuildMove(from, to, piece, board.PieceOn[to], promotion);
    AppendMove(move, CaptureScore(move));
}

// White's pawns are taken from the lowest square, Black's from the highest: each side's own rear first.
template <int side>
int PopPawn(Bitboard& pawns) {
    return side == WHITE ? PopLowest(pawns) : PopHighest(pawns);
}

// The squares from which pawns of the side attack the set.
template <int side>
Bitboard PawnAttackersOn(Bitboard targets) {
    if constexpr (side == WHITE) {
        return (targets & ~FILE_A) >> 9 | (targets & ~FILE_H) >> 7;
    } else {
        return (targets & ~FILE_A) << 7 | (targets & ~FILE_H) << 9;
    }
}

template <int side>
void GeneratePawnCaptures(Bitboard targets) {
    Bitboard pawns = PawnAttackersOn<side>(targets) & board.Pieces[PAWN][side];
    while (pawns != 0) {
        const int from = PopPawn<side>(pawns);
        for (Bitboard set = PawnCaptures[side][from] & targets; set != 0;) {
            const int to = PopLowest(set);
            if (SquareBit(to) & RelativeRankBits(side, 7)) {
                // The order differs on purpose from that of promotions without capture.
                for (const unsigned piece : {QUEEN, KNIGHT, ROOK, BISHOP}) {
                    AppendCapture(from, to, PAWN, piece);
                }
            } else {
                AppendCapture(from, to, PAWN);
            }
        }
    }
}

template <int side>
void GenerateEnPassant() {
    constexpr int STEP = PawnStep(side);
    const int victim = DoubleStepSquare();
    if (victim < 0) return;
    const int file = FileOf(victim);
    const Bitboard pawns = board.Pieces[PAWN][side];
    for (const int offset : {-1, 1}) {
        if (file + offset < 0 || file + offset > 7) continue;
        if (pawns & SquareBit(victim + offset)) {
            const Move move = BuildMove(victim + offset, victim + STEP, PAWN);
            AppendMove(move, CaptureScore(move));
        }
    }
}

template <int side, unsigned piece>
Bitboard PieceTargets(int from) {
    if constexpr (piece == KNIGHT) return KnightTargets[from];
    if constexpr (piece == KING) return KingTargets[from];
    if constexpr (piece == BISHOP) return DiagonalAttacks(from);
    if constexpr (piece == ROOK) return StraightAttacks(from);
    if constexpr (piece == QUEEN) return StraightAttacks(from) | DiagonalAttacks(from);
}

// Returns how many of the men attack the zone.
template <int side, unsigned piece>
int GeneratePieceCaptures(Bitboard targets, Bitboard zone) {
    int count = 0;
    for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
        const int from = PopLowest(men);
        const Bitboard attacks = PieceTargets<side, piece>(from);
        count += (attacks & zone) != 0;
        for (Bitboard set = attacks & targets; set != 0;) AppendCapture(from, PopLowest(set), piece);
    }
    return count;
}

template <int side>
void GenerateCapturesOf(Bitboard targets) {
    GeneratePawnCaptures<side>(targets);
    GenerateEnPassant<side>();
    const int king = static_cast<int>(board.KingSquare[side ^ 1]);
    const Bitboard zone = KingTargets[king] | SquareBit(king);
    int attackers = GeneratePieceCaptures<side, KNIGHT>(targets, zone);
    attackers += GeneratePieceCaptures<side, BISHOP>(targets, zone);
    attackers += GeneratePieceCaptures<side, ROOK>(targets, zone);
    attackers += GeneratePieceCaptures<side, QUEEN>(targets, zone);
    KingAttackCount[side] = attackers;
    GeneratePieceCaptures<side, KING>(targets, 0);
}

// Promotions of the pawns on the seventh rank whose square ahead is empty, White's highest square first.
template <int side, unsigned... pieces>
void GeneratePromotionsTo() {
    constexpr int STEP = PawnStep(side);
    Bitboard pawns = board.Pieces[PAWN][side] & RelativeRankBits(side, 6);
    while (pawns != 0) {
        const int from = side == WHITE ? PopHighest(pawns) : PopLowest(pawns);
        if (board.PieceOn[from + STEP] != EMPTY) continue;
        (AppendCapture(from, from + STEP, PAWN, pieces), ...);
    }
}

template <int side>
void AppendQuiet(int from, int to, unsigned piece, int selector) {
    const Move move = BuildMove(from, to, piece);
    AppendMove(move, HistoryCounter(move, selector, side));
}

template <int side>
void GenerateCastling(int selector) {
    constexpr int HOME = KingHome(side);
    if (IsCastlingOpen<side, 1>()) AppendQuiet<side>(HOME, HOME + 2, KING, selector);
    if (IsCastlingOpen<side, -1>()) AppendQuiet<side>(HOME, HOME - 2, KING, selector);
}

template <int side, unsigned piece>
void GeneratePieceQuiet(Bitboard empty, int selector) {
    for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
        const int from = PopLowest(men);
        for (Bitboard set = PieceTargets<side, piece>(from) & empty; set != 0;) {
            AppendQuiet<side>(from, PopLowest(set), piece, selector);
        }
    }
}

template <int side>
void GeneratePawnQuiet(Bitboard empty, int selector) {
    constexpr int STEP = PawnStep(side);
    Bitboard pawns = board.Pieces[PAWN][side] & ~RelativeRankBits(side, 6) & ShiftAhead<side ^ 1>(empty);
    while (pawns != 0) {
        const int from = PopPawn<side>(pawns);
        AppendQuiet<side>(from, from + STEP, PAWN, selector);
        const bool isAtHome = (SquareBit(from) & RelativeRankBits(side, 1)) != 0;
        if (isAtHome && (empty & SquareBit(from + 2 * STEP))) {
            AppendQuiet<side>(from, from + 2 * STEP, PAWN, selector);
        }
    }
}

template <int side>
void GenerateQuietOf(int selector) {
    const Bitboard empty = ~AllOccupied();
    GenerateCastling<side>(selector);
    GeneratePieceQuiet<side, KNIGHT>(empty, selector);
    GeneratePieceQuiet<side, BISHOP>(empty, selector);
    GeneratePawnQuiet<side>(empty, selector);
    GeneratePieceQuiet<side, ROOK>(empty, selector);
    GeneratePieceQuiet<side, QUEEN>(empty, selector);
    GeneratePieceQuiet<side, KING>(empty, selector);
}

}  // namespace

void GenerateCaptures(Bitboard targets) {
    board.SideToMove == WHITE ? GenerateCapturesOf<WHITE>(targets) : GenerateCapturesOf<BLACK>(targets);
}

void ResetKingAttackCounts() {
    KingAttackCount[WHITE] = KingAttackCount[BLACK] = 0;
}

void GeneratePromotions() {
    board.SideToMove == WHITE ? GeneratePromotionsTo<WHITE, QUEEN, ROOK, KNIGHT, BISHOP>()
                              : GeneratePromotionsTo<BLACK, QUEEN, ROOK, KNIGHT, BISHOP>();
}

void GenerateQueenKnightPromotions() {
    board.SideToMove == WHITE ? GeneratePromotionsTo<WHITE, QUEEN, KNIGHT>()
                              : GeneratePromotionsTo<BLACK, QUEEN, KNIGHT>();
}

void GenerateQuiet(int selector) {
    board.SideToMove == WHITE ? GenerateQuietOf<WHITE>(selector) : GenerateQuietOf<BLACK>(selector);
}

void GenerateAllStages() {
    GenerateCaptures(board.Occupied[ChangeSide(board.SideToMove)]);
    GeneratePromotions();
    GenerateQuiet(0);
}
