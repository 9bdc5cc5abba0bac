#pragma once

#include <cstdlib>
#include <optional>

#include "core/types.h"

// Ends games early by what both engines think of them.
class MatchJudge {
  public:
    // Looks at what the engine that has just moved says, in centipawns from its own view, nothing if it says
    // nothing; `plies` have been played with this move.
    void Look(std::optional<int> ownScore, int mover, int plies) {
        const int score = mover == WHITE ? ownScore.value_or(0) : -ownScore.value_or(0);
        const auto count = [&](int& counter, bool isTrue) { counter = ownScore && isTrue ? counter + 1 : 0; };
        count(evenPlies_, plies >= DRAW_FROM && std::abs(score) <= DRAW_SCORE);
        count(wonPlies_[WHITE], score >= WIN_SCORE);
        count(wonPlies_[BLACK], score <= -WIN_SCORE);
    }

    // White's half points, once both have agreed for long enough.
    std::optional<int> WhitePoints() const {
        if (evenPlies_ >= DRAW_PLIES) return 1;
        if (wonPlies_[WHITE] >= WIN_PLIES) return 2;
        return wonPlies_[BLACK] >= WIN_PLIES ? std::optional(0) : std::nullopt;
    }

    // Plies, and centipawns.
    static constexpr int DRAW_FROM = 80, DRAW_PLIES = 16, DRAW_SCORE = 10;
    static constexpr int WIN_PLIES = 8, WIN_SCORE = 700;

  private:
    int evenPlies_ = 0, wonPlies_[2] = {0, 0};
};
