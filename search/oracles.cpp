#include "search/oracles.h"

#include <algorithm>
#include <iterator>

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

// Two pieces against one, whatever pawns the two have beside them: what the search wins without help. Of all
// the others the result hangs on single squares.
struct TwoAgainstOne {
    unsigned First, Second;  // of the stronger side
    uint32_t MostUnits;      // of the one piece, in pawn units
};
constexpr TwoAgainstOne TWO_AGAINST_ONE[] = {
    {QUEEN, QUEEN, 9},   // the second queen mates even against a queen, with check after check
    {QUEEN, ROOK, 9},    // the same; but a queen and a minor piece don't beat a queen
    {QUEEN, BISHOP, 5},  // the queen alone beats a rook, and the rook can't even harass her king
    {QUEEN, KNIGHT, 5},
    {ROOK, ROOK, 5},    // they drive the king to the edge, and whatever stands in between is lost
    {ROOK, BISHOP, 3},  // a whole rook more; against a rook most of them are drawn, some won in sixty moves
    {ROOK, KNIGHT, 3},
};  // Two minor pieces beat a lone one in far too many moves, if at all.

// Whether the side `strong` wins by one of the rows above. With pawns of its own the
// weaker side may still promote.
bool IsTwoAgainstOne(int strong) {
    const int weak = ChangeSide(strong);
    if (CountPieces(strong) != 2 || CountPieces(weak) != 1 || board.PieceNumber[PAWN][weak] > 0) return false;
    const auto isRow = [=](const TwoAgainstOne& row) {
        return board.Pieces[row.First][strong] != 0 && board.Pieces[row.Second][strong] != 0 &&
               board.PieceMaterial[strong] == PieceUnits[row.First] + PieceUnits[row.Second] &&
               board.PieceMaterial[weak] <= row.MostUnits;
    };
    return std::any_of(std::begin(TWO_AGAINST_ONE), std::end(TWO_AGAINST_ONE), isRow);
}

// Whether the material tells the result well enough for a shallow node deep in the tree: a side without pawns
// against one without pieces, few pieces and as many on both sides, or a side to move that has few and fewer
// than its opponent. A side to move that has more is worth a look, unless it is sure to win.
bool IsObvious() {
    const uint32_t *units = board.PieceMaterial, *pawns = board.PieceNumber[PAWN];
    const int us = board.SideToMove, them = ChangeSide(us);
    for (const int side : {WHITE, BLACK}) {
        if (pawns[side] == 0 && units[ChangeSide(side)] < 2) return true;
        if (IsTwoAgainstOne(side)) return true;
    }
    return units[us] <= units[them] && units[us] < 11;
}

bool IsUnderPromotion(Move move) {
    return MovePromotion(move) != EMPTY && MovePromotion(move) != QUEEN;
}

}  // namespace

bool IsWithinTables() {
    return TablebaseProber != nullptr && static_cast<int>(board.PieceCount) <= FoundPieces &&
           board.CastlingFlags == 0;
}

bool ProbeTablebases(const Node& node, int* score) {
    if (!IsWithinTables()) return false;
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
