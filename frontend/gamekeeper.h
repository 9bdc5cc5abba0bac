#pragma once

#include <algorithm>
#include <vector>

#include "core/board.h"
#include "eval/evaluate.h"
#include "search/timecontrol.h"

// Brings back the game on the board, with its moves and the engine's side, at the end of its life. For
// commands that go through positions of their own.
class GameKeeper {
  public:
    GameKeeper() = default;
    ~GameKeeper() {
        board = board_;
        std::copy(history_.begin(), history_.end(), History);
        HistoryLength = static_cast<int>(history_.size());
        HistoryForgotten = forgotten_;
        EngineSide = engineSide_;
        GameSearches = searches_;
    }
    GameKeeper(const GameKeeper&) = delete;
    GameKeeper& operator=(const GameKeeper&) = delete;

  private:
    const Board board_ = board;
    const std::vector<HistoryRecord> history_{History, History + HistoryLength};
    const int forgotten_ = HistoryForgotten, engineSide_ = EngineSide, searches_ = GameSearches;
};
