#pragma once

#include <optional>
#include <string>

#include "tools/matchclock.h"
#include "tools/matchcourse.h"
#include "tools/uciengine.h"

// One game of a match, with its clock, its judge and its referee.

struct MatchGame {
    explicit MatchGame(const Opening& opening) : Course(opening) {}

    MatchCourse Course;
    int WhitePoints = 1;          // half points, 0..2
    std::string EndedBy;          // in a word or two: mate, judged, crash
    std::optional<Fault> LostBy;  // of the loser
    std::string FaultReport;      // what has happened, in lines
};

// Plays a game: fresh processes, so that nothing is left of the games before and each can be repeated alone.
// Throws MatchInterrupted.
MatchGame PlayMatchGame(const Opening& opening, const EngineSetup& white, const EngineSetup& black,
                        const MatchLimits& limits);
