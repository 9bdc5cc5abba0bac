#include "tools/elo.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr double CONFIDENCE = 1.959963984540054;  // standard deviations around 95 of 100 cases
constexpr double INFINITE = std::numeric_limits<double>::infinity();

// The score of a game in a pair with this result.
constexpr double ScoreOfPair(int result) {
    return result / (PAIR_RESULTS - 1.0);
}

double CountPairs(const PairCounts& pairs) {
    return std::accumulate(pairs.begin(), pairs.end(), 0);
}

// The standard deviation of the mean score, estimated from the pairs; not a number for fewer than two.
double StandardError(const PairCounts& pairs) {
    const double mean = MeanScore(pairs), count = CountPairs(pairs);
    double squares = 0;
    for (int i = 0; i < PAIR_RESULTS; ++i) squares += pairs[i] * std::pow(ScoreOfPair(i) - mean, 2);
    return std::sqrt(squares / (count - 1) / count);
}

// What has not happened yet is taken for rare, not for impossible: so many pairs.
constexpr double RARE = 1e-3;

using Shares = std::array<double, PAIR_RESULTS>;

// Of all distributions with the mean `score` the one under which the observed shares are likeliest divides
// each share by 1 + tilt * (its score - mean). The tilt is where the mean comes out right: the sum below
// falls all the way between the poles.
double FindTilt(const Shares& shares, double score) {
    constexpr int STEPS = 100;  // more than a double has bits
    double low = -1 / (1 - score), high = 1 / score;
    for (int step = 0; step < STEPS; ++step) {
        const double tilt = (low + high) / 2;
        double sum = 0;
        for (int i = 0; i < PAIR_RESULTS; ++i) {
            const double distance = ScoreOfPair(i) - score;
            sum += shares[i] * distance / (1 + tilt * distance);
        }
        (sum > 0 ? low : high) = tilt;
    }
    return (low + high) / 2;
}

// The mean log-likelihood of a pair under that distribution, less what doesn't depend on the score.
double LogLikelihood(const Shares& shares, double score) {
    const double tilt = FindTilt(shares, score);
    double sum = 0;
    for (int i = 0; i < PAIR_RESULTS; ++i) sum -= shares[i] * std::log1p(tilt * (ScoreOfPair(i) - score));
    return sum;
}

}  // namespace

double MeanScore(const PairCounts& pairs) {
    double points = 0;
    for (int i = 0; i < PAIR_RESULTS; ++i) points += pairs[i] * ScoreOfPair(i);
    const double count = CountPairs(pairs);
    return count > 0 ? points / count : 0.5;
}

double EloOfScore(double score) {
    return 400 * std::log10(score / (1 - score));
}

double ScoreOfElo(double elo) {
    return 1 / (1 + std::pow(10, -elo / 400));
}

double EloError(const PairCounts& pairs) {
    const double mean = MeanScore(pairs), margin = CONFIDENCE * StandardError(pairs);
    // A comparison that fails for no number, too.
    if (!(mean - margin > 0 && mean + margin < 1)) return INFINITE;
    return (EloOfScore(mean + margin) - EloOfScore(mean - margin)) / 2;
}

double LikelihoodOfSuperiority(const PairCounts& pairs) {
    const double lead = MeanScore(pairs) - 0.5, error = StandardError(pairs);
    if (lead == 0 || std::isnan(error)) return 0.5;
    return std::erfc(-lead / error / std::sqrt(2)) / 2;
}

double LogLikelihoodRatio(const PairCounts& pairs, double lower, double upper) {
    Shares shares;
    std::transform(pairs.begin(), pairs.end(), shares.begin(),
                   [](int count) { return std::max<double>(count, RARE); });
    const double total = std::accumulate(shares.begin(), shares.end(), 0.0);
    for (double& share : shares) share /= total;
    return total * (LogLikelihood(shares, ScoreOfElo(upper)) - LogLikelihood(shares, ScoreOfElo(lower)));
}
