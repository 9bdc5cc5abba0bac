#include "tools/matchstanding.h"

#include <cmath>

#include "core/textformat.h"

namespace {

std::string EloText(const PairCounts& pairs) {
    const double elo = EloOfScore(MeanScore(pairs)), error = EloError(pairs);
    if (std::isinf(elo)) return elo > 0 ? "Elo beyond measure" : "Elo beneath measure";
    return Format("Elo %+.1f +- ", elo) + (std::isinf(error) ? "unknown" : Format("%.1f", error));
}

}  // namespace

void MatchStanding::AddPair(const MatchGame& asWhite, const MatchGame& asBlack) {
    const int first = asWhite.WhitePoints, second = 2 - asBlack.WhitePoints;
    ++pairCount_;
    ++pairs_[first + second];
    ++games_[first];
    ++games_[second];
    ++endings_[asWhite.EndedBy];
    ++endings_[asBlack.EndedBy];
}

int MatchStanding::Faults() const {
    int count = 0;
    for (const auto& player : faults_) {
        for (const int faults : player) count += faults;
    }
    return count;
}

SprtVerdict MatchStanding::Verdict() const {
    if (!sprt_ || std::abs(Ratio()) < SPRT_BOUND) return SprtVerdict::OPEN;
    return Ratio() > 0 ? SprtVerdict::UPPER : SprtVerdict::LOWER;
}

std::string MatchStanding::Line() const {
    std::string line =
        Format("+%d -%d =%d, %.1f %%, ", games_[2], games_[0], games_[1], 100 * MeanScore(pairs_)) +
        EloText(pairs_);
    if (sprt_) line += Format(", LLR %+.2f of %.2f", Ratio(), SPRT_BOUND);
    return line;
}

std::string MatchStanding::Report() const {
    return ResultLines() + "Faults of the first:  " + FaultLine(0) + "Faults of the second: " + FaultLine(1);
}

std::string MatchStanding::ResultLines() const {
    if (pairCount_ == 0) return "No pair of games was completed\n";
    std::string text = Format("%d games: ", 2 * pairCount_) + Line() + "\n";
    text += Format("The first is stronger with a probability of %.1f %%\n",
                   100 * LikelihoodOfSuperiority(pairs_));
    if (sprt_) {
        const SprtVerdict verdict = Verdict();
        const double accepted = verdict == SprtVerdict::UPPER ? sprt_->Upper : sprt_->Lower;
        text += Format("SPRT of %g against %g Elo: ", sprt_->Upper, sprt_->Lower);
        text += verdict == SprtVerdict::OPEN ? "undecided\n" : Format("%g Elo accepted\n", accepted);
    }
    text += "Pairs with 0, 1/2, 1, 3/2, 2 points:";
    for (const int count : pairs_) text += Format(" %d", count);
    text += "\nEndings:";
    for (const auto& [ending, count] : endings_) text += Format(" %s %d,", ending.c_str(), count);
    text.back() = '\n';
    return text;
}

std::string MatchStanding::FaultLine(int player) const {
    std::string line;
    for (int kind = 0; kind < FAULT_KINDS; ++kind) {
        const int count = faults_[player][kind];
        if (count > 0) line += Format("%s%s %d", line.empty() ? "" : ", ", FaultNames[kind], count);
    }
    return (line.empty() ? "none" : line) + "\n";
}
