#include "search/prescan.h"

#include "core/board.h"
#include "core/keys.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movetest.h"
#include "search/draws.h"
#include "search/ordering.h"
#include "search/parameters.h"
#include "search/plyinfo.h"
#include "search/scores.h"
#include "search/statistics.h"
#include "search/transposition.h"

namespace {

constexpr int DEEP = 360;         // sixtieths of a ply; deeper nodes are worth a look at every move
constexpr int QUIET_MARGIN = 50;  // centipawns below beta within which quiet moves are worth one elsewhere

enum Kind { TABLE_MOVE, CAPTURE, QUIET };

// Whether the move, which gives check, mates.
bool IsMate(Move move) {
    MakeMove(move, 1);
    const bool isMate = !HasLegalReply();
    UnmakeMove();
    return isMate;
}

// Whether the position after a pseudo-legal move, whose key is given, ends the node: by the key alone
// wherever possible.
bool IsGoodEnough(const Node& node, Move move, uint64_t key, Kind kind, int* score) {
    const int draw = DrawScoreToMove();
    // A draw that is no more than alpha must not hide what is better.
    if (kind != CAPTURE && draw >= node.Beta && IsDrawAfter(move, HashKeyAfter(move))) {
        *score = draw;
        return true;
    }
    *score = MATE - 1 - Ply;
    if (node.Depth > DEEP && *score >= node.Beta && GivesCheck(move) && IsMate(move)) return true;
    const HashEntry* entry = HashProbe(key, ChangeSide(board.SideToMove));
    if (entry == nullptr || entry->Depth < node.Depth - PLY_DEPTH || !(HashBound(*entry) & BOUND_UPPER))
        return false;
    *score = -HashScoreAt(*entry, Ply + 1);
    return *score >= node.Beta;
}

// Whether the pseudo-legal move ends the node. Few do, so legality comes last.
bool IsCutOff(const Node& node, Move move, uint64_t key, Kind kind, int* score) {
    return IsGoodEnough(node, move, key, kind, score) && IsLegalCandidate(move, node.IsInCheck);
}

// Whether quiet moves other than killers are worth looking at.
bool WantsQuiets(const Node& node) {
    return node.Depth > DEEP || node.Eval.Score + QUIET_MARGIN >= node.Beta;
}

bool FindCutOff(const Node& node, MovePicker& picker, Move* move, int* score) {
    const auto test = [&](Move candidate, uint64_t key, Kind kind) {
        *move = candidate;
        return IsCutOff(node, candidate, key, kind, score);
    };
    // The table's entries are on their way a few moves ahead of the one that is looked at.
    const auto scan = [&](MovePicker::Span span, Kind kind) {
        constexpr int AHEAD = 8;
        uint64_t keys[AHEAD];
        for (int next = span.First; next < span.End + AHEAD; ++next) {
            uint64_t& key = keys[next % AHEAD];
            if (const int i = next - AHEAD; i >= span.First) {
                const Move candidate = MoveList[i].Move;
                const bool wasTested = candidate == node.HashMove || candidate == picker.Killer(0) ||
                                       candidate == picker.Killer(1);
                if (!wasTested && test(candidate, key, kind)) return true;
            }
            if (next >= span.End) continue;
            key = PositionKeyAfter(MoveList[next].Move);
            PrefetchHash(key, ChangeSide(board.SideToMove));
        }
        return false;
    };
    const Move hashMove = node.HashMove;
    if (hashMove != NO_MOVE && test(hashMove, PositionKeyAfter(hashMove), TABLE_MOVE)) return true;
    if (node.IsInCheck) return scan(picker.Evasions(), QUIET);
    // After a capture that leads into the quiescence search the table has no upper bound, and near it the
    // search of a quiet move is as quick as the table.
    if (node.Depth >= ScanCapturesDepth && scan(picker.Captures(), CAPTURE)) return true;
    if (node.Depth < ScanQuietsDepth) return false;
    for (const int i : {0, 1}) {
        const Move killer = picker.Killer(i);
        if (killer != NO_MOVE && test(killer, PositionKeyAfter(killer), QUIET)) return true;
    }
    return WantsQuiets(node) && scan(picker.Quiets(), QUIET);
}

}  // namespace

bool PreScan(const Node& node, MovePicker& picker, Move* move, int* score) {
    Count(STAT_PRESCANS);
    if (!FindCutOff(node, picker, move, score)) return false;
    Count(STAT_PRESCAN_CUTOFFS);
    if (*score == MATE - 1 - Ply) {
        Count(STAT_PRESCAN_MATES);
        if (node.IsInCheck) {
            RememberCheckReply(*move);
        } else if (TakesNothing(*move)) {
            UpdateHistory(node.Depth, *move, node.Selector);
        }
    }
    return true;
}
