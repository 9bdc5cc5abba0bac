#include "search/tableranking.h"

#include <algorithm>
#include <array>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "search/draws.h"
#include "search/oracles.h"
#include "search/scores.h"
#include "search/search.h"
#include "search/timecontrol.h"

namespace {

constexpr int FIFTY_LIMIT = 100;  // plies
constexpr int TRAP_TIME = 2;      // centiseconds of a timed search

std::vector<Move> ListLegalMoves() {
    const int start = MoveListTop;
    GenerateMoves();
    std::vector<Move> moves;
    for (int i = start; i < MoveListTop; ++i) {
        if (LeavesKingSafe(MoveList[i].Move)) moves.push_back(MoveList[i].Move);
    }
    MoveListTop = start;
    return moves;
}

bool AskTables(TableValue* value) {
    int score = 0;
    if (!IsWithinTables() || !TablebaseProber(&score)) return false;
    ++TablebaseHits;
    *value = score > 0 ? MateIn((MATE - score) / 2) : score < 0 ? MatedIn((score + MATE) / 2) : TABLE_DRAW;
    return true;
}

bool IsDrawnByRule() {
    return board.Fifty >= FIFTY_LIMIT || IsMateImpossible() || (IsRepetition() && CountOccurrences() >= 3);
}

// The value of the position on the board, and that which it has apart from draws that must be claimed; false
// when it is not known.
bool FindValue(TableValue* value, TableValue* unclaimed) {
    *value = *unclaimed = TABLE_DRAW;
    // A mate with the hundredth ply comes before the draw.
    if (ListLegalMoves().empty()) {
        if (IsKingAttacked(board.SideToMove)) *value = *unclaimed = MatedIn(0);
        return true;
    }
    if (IsMateImpossible()) return true;
    const bool isKnown = AskTables(unclaimed);
    if (IsDrawnByRule()) return true;
    *value = *unclaimed;
    return isKnown;
}

// Fills in what is known of a move; false when its value isn't.
bool ValueMove(RankedMove& move) {
    const int fifty = static_cast<int>(board.Fifty);
    MakeMove(move.Move, 1);
    TableValue value = TABLE_DRAW, unclaimed = TABLE_DRAW;
    const bool isKnown = FindValue(&value, &unclaimed);
    move.IsProgress = board.Fifty == 0;
    move.IsRepetition = IsRepetition();
    UnmakeMove();
    if (!isKnown) return false;
    move.Value = BeforeMove(value);
    move.Unclaimed = BeforeMove(unclaimed);
    const int plies = 2 * MateMoves(move.Value) - (IsWin(move.Value) ? 1 : 0);
    move.IsLate = move.Value != TABLE_DRAW && !move.IsProgress && fifty + plies > FIFTY_LIMIT;
    return true;
}

// The permille of the replies to the position on the board that lose.
int CountLosingReplies() {
    const std::vector<Move> replies = ListLegalMoves();
    int losing = 0;
    for (const Move reply : replies) {
        MakeMove(reply, 1);
        TableValue value = TABLE_DRAW;
        const bool loses = AskTables(&value) && IsWin(value);
        UnmakeMove();
        if (!loses && MoveCaptured(reply) != EMPTY) return 0;
        losing += loses;
    }
    return replies.empty() ? 0 : 1000 * losing / static_cast<int>(replies.size());
}

// What moves are compared by, the most important first; higher is better.
std::array<int, 6> RankOf(const RankedMove& move) {
    constexpr int LONGER_THAN_ANY = 1000;
    const int length = MateMoves(move.Value);
    if (IsWin(move.Value)) return {1, !move.IsLate, -length, move.IsProgress, !move.IsRepetition, 0};
    if (IsLoss(move.Value)) return {-1, move.IsLate, length, !move.IsProgress, move.IsRepetition, 0};
    const bool isCapture = MoveCaptured(move.Move) != EMPTY;
    const int left = LONGER_THAN_ANY - MateMoves(move.Unclaimed);
    const int unclaimed = IsWin(move.Unclaimed) ? left : IsLoss(move.Unclaimed) ? -left : 0;
    return {0, unclaimed, move.Traps, !move.IsRepetition, isCapture, !move.IsProgress};
}

}  // namespace

std::vector<RankedMove> ValueMoves(const std::vector<Move>& moves) {
    std::vector<RankedMove> valued;
    for (const Move move : moves) {
        valued.push_back({move, TABLE_DRAW, false, false, false, TABLE_DRAW, 0});
        if (!ValueMove(valued.back())) return {};
    }
    return valued;
}

void CountTraps(std::vector<RankedMove>& moves) {
    for (RankedMove& move : moves) {
        // On a slow disk a thousand questions take longer than a clock may have left.
        if (IsTimedSearch() && LimitElapsed() > TRAP_TIME) return;
        if (move.Value != TABLE_DRAW || move.IsRepetition) continue;
        MakeMove(move.Move, 1);
        move.Traps = IsDrawnByRule() ? 0 : CountLosingReplies();
        UnmakeMove();
    }
}

void RankMoves(std::vector<RankedMove>& moves) {
    const auto isBetter = [](const RankedMove& a, const RankedMove& b) { return RankOf(a) > RankOf(b); };
    std::stable_sort(moves.begin(), moves.end(), isBetter);
}

Move FindTableMove() {
    if (!IsWithinTables() || IsDrawnByRule()) return NO_MOVE;
    std::vector<RankedMove> moves = ValueMoves(ListLegalMoves());
    RankMoves(moves);
    return moves.empty() ? NO_MOVE : moves[0].Move;
}
