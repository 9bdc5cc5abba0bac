#include "search/nullmove.h"

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/exchange.h"
#include "core/keys.h"
#include "core/makemove.h"
#include "search/modes.h"
#include "search/plyinfo.h"
#include "search/scores.h"
#include "search/search.h"
#include "search/statistics.h"
#include "search/transposition.h"

namespace {

constexpr int SAFE_SURPLUS = 1050;  // centipawns above beta that no single capture takes back

int VictimValue(unsigned piece) {
    return piece == KING ? 0 : PieceValue[piece];
}

// Whether an attack, were its side on move, is reason enough not to pass: a dear man hits a cheap one by more
// than there is to spare (it will not have gone there for that alone), or it wins the man.
bool IsReasonNotToPass(int square, int from, unsigned piece, int surplus) {
    const unsigned victim = board.PieceOn[square];
    if (PieceValue[piece] - VictimValue(victim) > surplus) return true;
    return CaptureIsSafe(square, from, piece, victim, EMPTY);
}

// Whether a man of the side to move's opponent, were it on move, could take enough to bring the score below
// beta again. The opponent must be on move.
bool HasThreat(Bitboard targets, int surplus) {
    const int us = board.SideToMove;
    for (const unsigned piece : {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
        for (Bitboard men = board.Pieces[piece][us]; men != 0;) {
            const int from = PopLowest(men);
            for (Bitboard set = AttacksFrom(from, us, piece) & targets; set != 0;) {
                if (IsReasonNotToPass(PopLowest(set), from, piece, surplus)) return true;
            }
        }
    }
    return false;
}

// Whether the opponent threatens to take back what the side to move has to spare.
bool IsThreatened(const Node& node) {
    const int surplus = node.Eval.Score - node.Beta;
    if (surplus > SAFE_SURPLUS) return false;
    const int us = board.SideToMove, them = ChangeSide(us);
    Bitboard targets = board.Occupied[us] & ~board.Pieces[KING][us];
    if (surplus > PieceValue[PAWN]) targets &= ~board.Pieces[PAWN][us];
    if (!node.Eval.IsLazy) targets &= node.Eval.Attacked[them];
    if (targets == 0) return false;
    board.SideToMove = them;
    const bool isThreatened = HasThreat(targets, surplus);
    board.SideToMove = us;
    return isThreatened;
}

// The depth of the deepest null search.
int FullNullDepth(int depth) {
    const bool hasLittle = board.PieceMaterial[board.SideToMove] < 9;
    const int reduced = depth - 300;
    return hasLittle || reduced < PLY_DEPTH ? depth - 240 : reduced;
}

}  // namespace

bool MayTryNull(const Node& node) {
    const uint32_t units = board.PieceMaterial[board.SideToMove];
    if (node.Type == 0 || node.ForbidsNull || node.IsInCheck) return false;
    if (node.Beta >= MATE_BOUND || node.Alpha < 1 - MATE_BOUND) return false;
    if (units == 0 || (units < 6 && node.Depth > 480)) return false;
    if (node.Eval.Score < node.Beta) return false;
    if (!IsThreatened(node)) return true;
    Count(STAT_NULL_THREATS);
    return false;
}

int TryNull(Node& node) {
    Count(STAT_NULL_TRIES);
    const int fullDepth = FullNullDepth(node.Depth), mated = Ply + 2 - MATE;
    int score = 0;
    PrefetchHash(board.HashKey ^ CastleKeys[board.CastlingFlags], ChangeSide(board.SideToMove));
    MakeNullMove();
    PlyInfo[Ply].Flags = PlyInfo[Ply].GivesCheck = 0;
    PlyInfo[++Ply].InCheck = 0;
    // The remainder first, then whole plies more.
    for (int depth = fullDepth % PLY_DEPTH;; depth += PLY_DEPTH) {
        score = depth >= PLY_DEPTH ? -Search(-node.Beta, 1 - node.Beta, depth, 0, -1)
                                   : -Quiesce(-node.Beta, 1 - node.Beta, 0, -1);
        if (score < node.Beta || depth + PLY_DEPTH > fullDepth || StopRequested) break;
    }
    --Ply;
    UnmakeNullMove();
    if (score == mated) {
        node.MateThreat = 1;
        Count(STAT_MATE_THREATS);
    }
    return score;
}
