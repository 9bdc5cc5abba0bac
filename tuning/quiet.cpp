#include "tuning/quiet.h"

#include <algorithm>
#include <array>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/exchange.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "eval/evaluate.h"

namespace {

constexpr int DEEPEST = 12;           // plies; lines of captures are seldom half as long
constexpr int MATED = -32000;         // centipawns, beyond every evaluation
constexpr int LARGEST_TREE = 20'000;  // positions

// The best line found, from a ply on.
struct Line {
    std::array<Move, DEEPEST> Moves;
    int Length = 0;

    void Set(Move move, const Line& rest) {
        Moves[0] = move;
        std::copy_n(rest.Moves.begin(), rest.Length, Moves.begin() + 1);
        Length = rest.Length + 1;
    }
};

int visited;

bool IsInCheck() {
    return IsKingAttacked(board.SideToMove);
}

// The evaluation of the side to move, of which both sides get the same whoever the engine is.
int StandingScore() {
    int score = 0;
    EngineSide = board.SideToMove;
    Evaluate(&score);
    return score;
}

// Appends what is tried: every way out of check, else captures that lose nothing and promotions.
void GenerateTried(bool isInCheck) {
    if (isInCheck) {
        GenerateMoves();
        return;
    }
    const int start = MoveListTop;
    GenerateCaptures(board.Occupied[ChangeSide(board.SideToMove)]);
    GenerateQueenKnightPromotions();
    const auto isTried = [](const ScoredMove& entry) {
        if (MoveCaptured(entry.Move) == KING) return false;
        return MovePromotion(entry.Move) != EMPTY || IsSafeMove(entry.Move);
    };
    MoveListTop =
        static_cast<int>(std::partition(MoveList + start, MoveList + MoveListTop, isTried) - MoveList);
}

bool HasLegalMove() {
    const int start = MoveListTop;
    GenerateMoves();
    const bool isFound = std::any_of(MoveList + start, MoveList + MoveListTop,
                                     [](const ScoredMove& entry) { return LeavesKingSafe(entry.Move); });
    MoveListTop = start;
    return isFound;
}

int SearchLine(int alpha, int beta, int depth, Line& line) {
    line.Length = 0;
    const bool isInCheck = IsInCheck();
    int best = isInCheck ? MATED : StandingScore();
    if (depth == 0 || ++visited > LARGEST_TREE) return isInCheck ? StandingScore() : best;
    if (best >= beta) return best;
    const int start = MoveListTop;
    GenerateTried(isInCheck);
    const int end = MoveListTop;
    for (int i = start; i < end && best < beta; ++i) {
        SelectBestMove(i, end);
        const Move move = MoveList[i].Move;
        if (!LeavesKingSafe(move)) continue;
        MakeMove(move, 1);
        Line rest;
        const int score = -SearchLine(-beta, -std::max(alpha, best), depth - 1, rest);
        UnmakeMove();
        if (score <= best) continue;
        best = score;
        line.Set(move, rest);
    }
    MoveListTop = start;
    return best;
}

}  // namespace

bool ResolveToQuiet() {
    Line line;
    visited = MoveListTop = 0;
    SearchLine(MATED, -MATED, DEEPEST, line);
    for (int i = 0; i < line.Length; ++i) MakeMove(line.Moves[static_cast<size_t>(i)], 1);
    HistoryLength = 0;
    return !IsInCheck() && HasLegalMove() && line.Length < DEEPEST && visited <= LARGEST_TREE;
}
