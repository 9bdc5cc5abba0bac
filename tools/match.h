#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/matchplayer.h"
#include "tools/matchstanding.h"

struct MatchPlan {
    MatchLimits Limits;
    std::vector<Opening> Openings;  // each for a pair of games with colours reversed; again from the first on
    int Pairs = 100;
    int Concurrency = 1;  // games at once
    std::optional<SprtBounds> Sprt;
    std::string PgnPath;  // games are added to this file; empty: nowhere
};

// Plays the match and tells of its progress, of faults and of its result. Returns whether all of it has been
// played, or as much as the sequential test needs, without a fault. Throws std::runtime_error when the system
// fails.
bool PlayMatch(const MatchPlan& plan, const MatchPlayer& first, const MatchPlayer& second);
