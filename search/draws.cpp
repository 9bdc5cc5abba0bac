#include "search/draws.h"

#include <algorithm>

#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/keys.h"
#include "core/makemove.h"
#include "eval/evaluate.h"
#include "eval/materialtable.h"

int DrawScore = 0;

namespace {

constexpr uint32_t FIFTY_LIMIT = 100;  // plies

constexpr uint32_t MANY_UNITS = 11;
constexpr Bitboard CORNERS = SquareBit(A1) | SquareBit(H1) | SquareBit(A8) | SquareBit(H8);

// Whether a side whose pieces can't force a mate can't even be helped to one: it has a minor piece at most,
// and the enemy king is not so near to a corner that a man of its own could shut it in there.
bool IsHarmless(int side) {
    if (board.PieceMaterial[side] >= 6) return false;
    const int enemy = ChangeSide(side), king = static_cast<int>(board.KingSquare[enemy]);
    if (board.Material[enemy] == 0) return true;
    Bitboard near = KingTargets[king] | SquareBit(king);
    for (Bitboard ring = KingTargets[king]; ring != 0;) near |= KingTargets[PopLowest(ring)];
    return (near & CORNERS) == 0;
}

bool IsIrreversible(Move move) {
    return move == NO_MOVE || !IsQuiet(move) || MovePiece(move) == PAWN;
}

// Whether the position with this key, at this length of the record and with `last` as its last move, has
// occurred before.
bool IsRepeated(Move last, int length, uint64_t hashKey) {
    // Two plies back is another position of the side, so the walk compares from four plies back on.
    for (int back = 2; back <= length; back += 2) {
        const HistoryRecord& earlier = History[length - back];
        if (IsIrreversible(earlier.Move) || IsIrreversible(last)) return false;
        if (back >= 4 && earlier.HashKey == hashKey) return true;
        last = History[length - back - 1].Move;
    }
    return false;
}

}  // namespace

bool IsMateImpossible() {
    return !HasPawns() && board.Material[WHITE] + board.Material[BLACK] <= 300;
}

bool HasManyPieces() {
    return board.PieceMaterial[WHITE] >= MANY_UNITS || board.PieceMaterial[BLACK] >= MANY_UNITS;
}

bool IsEndgameDraw(int alpha, int beta, int* score) {
    const MaterialEntry material = CurrentMaterial();
    const auto cannotWin = [&](int side) { return (material.Flags[side] & MATERIAL_CANNOT_WIN) != 0; };
    if (cannotWin(WHITE) && cannotWin(BLACK) && board.Material[WHITE] + board.Material[BLACK] < 600) {
        *score = DrawScoreToMove();
        return true;
    }
    const int us = board.SideToMove, them = ChangeSide(us);
    if (alpha >= 0 && cannotWin(us) && IsHarmless(us)) {
        *score = alpha;
        return true;
    }
    if (beta <= 0 && cannotWin(them) && IsHarmless(them)) {
        *score = 0;
        return true;
    }
    return false;
}

bool IsSimpleEnding() {
    const MaterialEntry material = CurrentMaterial();
    if ((material.Flags[WHITE] | material.Flags[BLACK]) & MATERIAL_CANNOT_WIN) return true;
    const auto [less, more] = std::minmax(board.PieceMaterial[WHITE], board.PieceMaterial[BLACK]);
    return HasPawns() ? more - less > 6 : less < 9;
}

int DrawScoreToMove() {
    return board.SideToMove == EngineSide ? DrawScore : -DrawScore;
}

bool IsRepetition() {
    return HistoryLength > 0 && IsRepeated(LastMove(), HistoryLength, board.HashKey);
}

int CountOccurrences() {
    const Board now = board;
    const int length = HistoryLength;
    const uint64_t key = PositionKey();
    int count = 1;
    for (int reach = std::min(static_cast<int>(board.Fifty), length); reach > 0 && TakeBackMove(); --reach) {
        if (board.SideToMove == now.SideToMove && PositionKey() == key) ++count;
    }
    board = now;
    HistoryLength = length;
    return count;
}

bool IsDraw() {
    return board.Fifty >= FIFTY_LIMIT || IsRepetition();
}

bool IsDrawAfter(Move move, uint64_t hashKey) {
    if (IsIrreversible(move)) return false;
    return board.Fifty + 1 >= FIFTY_LIMIT || IsRepeated(move, HistoryLength + 1, hashKey);
}
