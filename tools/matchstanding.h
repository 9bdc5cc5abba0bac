#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>

#include "tools/elo.h"
#include "tools/matchgame.h"

// What a match has come to so far, from the first player's point of view.

// The differences, in Elo, between which the sequential test decides.
struct SprtBounds {
    double Lower = 0, Upper = 0;
};

enum class SprtVerdict { OPEN, LOWER, UPPER };

class MatchStanding {
  public:
    explicit MatchStanding(const std::optional<SprtBounds>& sprt) : sprt_(sprt) {}

    // Counts a pair: the games in which the first player was White and Black.
    void AddPair(const MatchGame& asWhite, const MatchGame& asBlack);

    // Counts a fault as soon as it has happened; the player is 0 or 1.
    void AddFault(int player, Fault fault) { ++faults_[player][static_cast<int>(fault)]; }

    int Pairs() const { return pairCount_; }
    int Faults() const;
    SprtVerdict Verdict() const;

    // One line without its end: results, score, Elo, and the state of the test.
    std::string Line() const;

    // The lines of the final report.
    std::string Report() const;

  private:
    std::string ResultLines() const;
    std::string FaultLine(int player) const;
    double Ratio() const { return LogLikelihoodRatio(pairs_, sprt_->Lower, sprt_->Upper); }

    std::optional<SprtBounds> sprt_;
    int pairCount_ = 0;
    PairCounts pairs_{};
    std::array<int, 3> games_{};  // lost, drawn, won
    std::map<std::string, int> endings_;
    int faults_[2][FAULT_KINDS] = {};
};
