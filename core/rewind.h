#pragma once

#include "core/board.h"
#include "core/makemove.h"

// A look back into the game: takes moves back one by one and, at the end of its life, puts all of them on the
// board again. No move may be made meanwhile: it would take the place of one that waits in History.
class GameRewind {
  public:
    GameRewind() = default;
    ~GameRewind() {
        board = board_;
        HistoryLength = length_;
    }
    GameRewind(const GameRewind&) = delete;
    GameRewind& operator=(const GameRewind&) = delete;

    // Takes one more move back; false when there is none.
    static bool StepBack() { return TakeBackMove(); }

    // The move that was made from the position on the board; one must have been taken back.
    static Move NextMove() { return History[HistoryLength].Move; }

  private:
    const Board board_ = board;
    const int length_ = HistoryLength;
};
