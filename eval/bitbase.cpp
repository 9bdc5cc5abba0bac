#include "eval/bitbase.h"

#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/types.h"
#include "eval/pawnsets.h"

namespace {

// Files a to d, the other files being mirror images. The outer ranks, where only a board set up by hand has a
// pawn, have rows that stay empty.
constexpr int PAWN_ROWS = 32;

// For a white pawn and a white king the squares of the black king on which White wins, by the side to move.
// Illegal placings are never won.
Bitboard Won[2][PAWN_ROWS][64];

constexpr int PawnIndex(int square) {
    return RankOf(square) * 4 + FileOf(square);
}
constexpr int PawnSquare(int index) {
    return MakeSquare(index % 4, index / 4);
}

// The squares next to a square of the set, as kings go.
constexpr Bitboard KingReach(Bitboard set) {
    const Bitboard row = set | Neighbours(set);
    return Neighbours(set) | row << 8 | row >> 8;
}

// Where the black king may stand at all.
Bitboard PlacesOfWeakKing(int king, int pawn) {
    return ~(KingTargets[king] | SquareBit(king) | SquareBit(pawn));
}

// Where the black king loses against the pawn's next step.
Bitboard WonByPushing(int king, int pawn) {
    const int next = pawn + 8;
    if (king == next) return 0;
    if (RankOf(next) == 7) {
        // Should a queen stalemate, a rook does not.
        const bool isDefended = (KingTargets[king] & SquareBit(next)) != 0;
        return ~SquareBit(next) & (isDefended ? ~Bitboard{0} : ~KingTargets[next]);
    }
    Bitboard won = Won[BLACK][PawnIndex(next)][king];
    if (RankOf(pawn) == 1 && king != next + 8) {
        won |= Won[BLACK][PawnIndex(next + 8)][king] & ~SquareBit(next);
    }
    return won;
}

Bitboard WonOnMove(int king, int pawn) {
    Bitboard won = WonByPushing(king, pawn);
    Bitboard targets = KingTargets[king] & ~SquareBit(pawn);
    while (targets != 0) won |= Won[BLACK][PawnIndex(pawn)][PopLowest(targets)];
    return won & PlacesOfWeakKing(king, pawn) & ~PawnCaptures[WHITE][pawn];
}

// Black loses where he has moves and every one of them loses. Taking the pawn never does: no placing of both
// on one square is won. Without a move it is stalemate, because a pawn and a king alone mate nobody.
Bitboard WonAgainstMove(int king, int pawn) {
    const Bitboard targets = ~(KingTargets[king] | SquareBit(king) | PawnCaptures[WHITE][pawn]);
    const Bitboard refuges = targets & ~Won[WHITE][PawnIndex(pawn)][king];
    return PlacesOfWeakKing(king, pawn) & KingReach(targets) & ~KingReach(refuges);
}

// One pass over the white king's squares; whether it found a win.
bool Improve(int pawn) {
    bool isChanged = false;
    for (int king = 0; king < 64; ++king) {
        if (king == pawn) continue;
        Bitboard& onMove = Won[WHITE][PawnIndex(pawn)][king];
        Bitboard& againstMove = Won[BLACK][PawnIndex(pawn)][king];
        const Bitboard before[] = {onMove, againstMove};
        onMove = WonOnMove(king, pawn);
        againstMove = WonAgainstMove(king, pawn);
        isChanged |= before[0] != onMove || before[1] != againstMove;
    }
    return isChanged;
}

}  // namespace

void InitPawnBitbase() {
    // A pawn's wins rest on those of its next steps, so the most advanced come first.
    for (int index = PAWN_ROWS - 5; index >= 4; --index) {
        for (int king = 0; king < 64; ++king) Won[WHITE][index][king] = Won[BLACK][index][king] = 0;
        while (Improve(PawnSquare(index))) {
        }
    }
}

bool IsPawnEndingWon(int pawnSide, int strongKing, int weakKing, int pawn, int sideToMove) {
    const int flip = (pawnSide == BLACK ? 56 : 0) ^ (FileOf(pawn) > 3 ? 7 : 0);
    const int turn = sideToMove == pawnSide ? WHITE : BLACK;
    return (Won[turn][PawnIndex(pawn ^ flip)][strongKing ^ flip] & SquareBit(weakKing ^ flip)) != 0;
}
