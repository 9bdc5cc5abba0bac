#include "frontend/learning.h"

#include <cstdlib>

#include "book/booklearning.h"
#include "book/booksettings.h"
#include "book/learnqueue.h"
#include "core/rewind.h"
#include "frontend/resign.h"
#include "search/bookanswer.h"
#include "search/root.h"
#include "search/search.h"

namespace {

constexpr int LOST = -400;  // centipawns: the loss is confirmed

// Whether the last scores are those of a game that is not going wrong.
bool HasScoreComeBack() {
    constexpr int LEVEL = -9;
    const bool isLevel = ResignHistory[0].Score >= LEVEL && ResignHistory[1].Score >= LEVEL &&
                         ResignHistory[2].Score > LEVEL - 1;
    return isLevel || IsBookMove;
}

// Whether the score has fallen so much since the own move before that its position is worth remembering.
bool HasMisjudged() {
    constexpr int WORST_BEFORE = -180, BEST_NOW = 520, FALL = 40;  // centipawns, all exclusive
    constexpr int LEAST_DEPTH = 7;
    const OwnMove &now = ResignHistory[0], &before = ResignHistory[1];
    return GamePly() > 2 && !now.IsFromBook && !before.IsFromBook && before.Score > WORST_BEFORE &&
           now.Score < BEST_NOW && now.Score - before.Score < -FALL && IterationDepth >= LEAST_DEPTH &&
           IsOfThisGame(0) && IsOfThisGame(1);
}

// Whether the position on the board is of a kind that comes about again: early in the game, with many pieces.
bool IsWorthLearning() {
    constexpr uint32_t OWN_UNITS = 13, OPPONENT_UNITS = 14;  // the first exclusive
    constexpr uint32_t QUIET_PLIES = 70;
    constexpr int LAST_PLY = 100;
    return board.PieceMaterial[board.SideToMove] > OWN_UNITS &&
           board.PieceMaterial[ChangeSide(board.SideToMove)] >= OPPONENT_UNITS && board.Fifty < QUIET_PLIES &&
           GamePly() < LAST_PLY;
}

// Queues the position before the engine's last move but one.
void QueuePreviousPosition() {
    const GameRewind game;
    for (int i = 0; i < 3; ++i) {
        if (!game.StepBack()) return;
    }
    if (!IsWorthLearning()) return;
    const int depth = IterationDepth * PLY_DEPTH + PLY_DEPTH / 2;
    QueueLesson(depth, ResignHistory[1].Score, ResignHistory[0].Score, game.NextMove());
}

}  // namespace

void LearnFromScore() {
    if (IsBookMove || std::abs(RootScore) <= BookLearningBound || !IsBookLearningDue()) return;
    LearnBookGame(RootScore < 0 ? LINE_WENT_BADLY : LINE_WENT_WELL);
}

void UpdatePositionLearning() {
    if (LearningQueueCount > 0 && RootScore < LOST) {
        FlushLearningQueue();
    } else if (HasScoreComeBack()) {
        ClearLearningQueue();
    }
    if (HasMisjudged()) QueuePreviousPosition();
}
