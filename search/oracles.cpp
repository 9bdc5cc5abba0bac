#include "search/oracles.h"

#include <algorithm>

#include "book/booksettings.h"
#include "core/board.h"
#include "egtb/tablebases.h"
#include "eval/evaluate.h"
#include "search/draws.h"
#include "search/plyinfo.h"
#include "search/scores.h"
#include "search/search.h"
#include "search/transposition.h"

bool (*TablebaseProber)(int* score) = nullptr;
bool (*LearnedProber)(int* depth, int* score) = nullptr;

namespace {

constexpr int TABLEBASE_DEPTH = 11820;
constexpr int LOWEST_MATE = 32401;  // what the tables say of a mate is at least this in magnitude

// Two pieces against one that they outweigh by a rook: the search finds its way.
bool IsTwoAgainstOne(int strong) {
    const int weak = ChangeSide(strong);
    return CountPieces(strong) == 2 && CountPieces(weak) == 1 &&
           board.PieceMaterial[strong] >= board.PieceMaterial[weak] + PieceUnits[ROOK];
}

// Whether the material tells the result well enough for a shallow node deep in the tree.
bool IsObvious() {
    const uint32_t *units = board.PieceMaterial, *pawns = board.PieceNumber[PAWN];
    const int us = board.SideToMove, them = ChangeSide(us);
    for (const int side : {WHITE, BLACK}) {
        if (pawns[side] == 0 && units[ChangeSide(side)] < 2) return true;
        if (IsTwoAgainstOne(side)) return true;
    }
    if (units[us] == units[them]) return units[us] < 11;
    return units[us] < units[them] && units[us] < 11;
}

bool IsUnderPromotion(Move move) {
    return MovePromotion(move) != EMPTY && MovePromotion(move) != QUEEN;
}

}  // namespace

bool ProbeTablebases(const Node& node, int* score) {
    if (TablebaseProber == nullptr || static_cast<int>(board.PieceCount) > FoundPieces) return false;
    if (board.CastlingFlags != 0) return false;
    const bool isForced = Ply < 2 || node.Depth >= 240;
    if (!isForced && (IsUnderPromotion(LastMove()) || IsObvious())) return false;
    if (!TablebaseProber(score)) return false;
    ++TablebaseHits;
    if (*score >= LOWEST_MATE) {
        *score += 1 - Ply;
    } else if (*score <= -LOWEST_MATE) {
        *score += Ply;
    } else if (*score == 0) {
        *score = DrawScoreToMove();
    }
    HashStore(TABLEBASE_DEPTH, NO_MOVE, *score, BOUND_EXACT, 0, node.SearchFlags, Ply);
    return true;
}

bool ProbeLearned(const Node& node, int* score) {
    constexpr int MIN_DEPTH = 360, LAST_PLY = 120;
    constexpr uint32_t MIN_UNITS = 15;
    if (LearnedProber == nullptr || !UseLearningData || node.Depth <= MIN_DEPTH) return false;
    if (board.SideToMove != EngineSide || GamePly() >= LAST_PLY) return false;
    if (std::min(board.PieceMaterial[WHITE], board.PieceMaterial[BLACK]) < MIN_UNITS) return false;
    int depth = 0;
    return LearnedProber(&depth, score) && depth >= node.Depth;
}
