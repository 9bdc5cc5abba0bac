#pragma once

#include <array>

// What the results of a match say about the difference in strength. Games are counted in pairs, of one
// opening with both colours: an opening that favours a side spoils no pair, and the two games of a pair,
// which have much in common, are not taken for independent. All points of view are the first engine's.

// Pairs by what the first engine has got out of them: 0, 1/2, 1, 3/2 and 2 points.
constexpr int PAIR_RESULTS = 5;
using PairCounts = std::array<int, PAIR_RESULTS>;

// The average of a game, 0..1; a half without any pair.
double MeanScore(const PairCounts& pairs);

// The difference that a score (0..1) stands for in the logistic model, and the score that a difference stands
// for. Infinite at both ends.
double EloOfScore(double score);
double ScoreOfElo(double elo);

// Half of the interval around the difference that holds the true one in 95 of 100 matches; infinite where the
// interval has no end.
double EloError(const PairCounts& pairs);

// The probability, 0..1, that the first engine is the stronger one, if nothing was known before the match.
double LikelihoodOfSuperiority(const PairCounts& pairs);

// The sequential test of two hypotheses about the difference, after Wald, with the likelihoods of the
// likeliest distributions that have the means in question: the log-likelihood ratio of `upper` against
// `lower`, both in Elo. Beyond SPRT_BOUND the upper one is accepted, below -SPRT_BOUND the lower one, each
// falsely in 5 of 100 matches.
constexpr double SPRT_BOUND = 2.944438979166440;  // log(0.95 / 0.05)
double LogLikelihoodRatio(const PairCounts& pairs, double lower, double upper);
