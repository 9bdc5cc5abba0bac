#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "core/types.h"

// What an engine may use for a move: the clock if it has a base, else the depth if there is one, else nodes.
struct MatchLimits {
    int64_t Nodes = 0;
    int Depth = 0;
    int64_t BaseMs = 0, IncrementMs = 0;
    bool IsJudged = true;  // games that both engines take for decided or drawn end early

    bool HasClock() const { return BaseMs > 0; }
};

// The clocks of a game.
class MatchClock {
  public:
    // Time beyond the clock that pipes and a busy machine may take.
    static constexpr int64_t MARGIN_MS = 50;

    explicit MatchClock(const MatchLimits& limits) : limits_(limits), leftMs_{limits.BaseMs, limits.BaseMs} {}

    std::string GoLine() const {
        if (!limits_.HasClock()) {
            return limits_.Depth > 0 ? "go depth " + std::to_string(limits_.Depth)
                                     : "go nodes " + std::to_string(limits_.Nodes);
        }
        const std::string increment = std::to_string(limits_.IncrementMs);
        return "go wtime " + std::to_string(leftMs_[WHITE]) + " btime " + std::to_string(leftMs_[BLACK]) +
               " winc " + increment + " binc " + increment;
    }

    // How long the side may take.
    std::optional<int64_t> LimitMs(int side) const {
        return limits_.HasClock() ? std::optional(leftMs_[side] + MARGIN_MS) : std::nullopt;
    }

    void Charge(int side, int64_t usedMs) {
        leftMs_[side] = std::max<int64_t>(leftMs_[side] - usedMs, 0) + limits_.IncrementMs;
    }

  private:
    const MatchLimits& limits_;
    int64_t leftMs_[2];
};
