#pragma once

#include <cmath>
#include <vector>

#include "tuning/samples.h"
#include "tuning/slopes.h"

// What evaluations say about results: the points that White expects are 1 / (1 + exp(-(scale x score +
// offset))), with one offset for each source of games, since White has scored better than its positions in
// some.

struct LogisticModel {
    double Scale = 0.005;         // per centipawn
    std::vector<double> Offsets;  // by source

    double Exponent(double score, int source) const {
        return Scale * score + Offsets[static_cast<size_t>(source)];
    }
};

// A model with an offset for every source of the samples.
LogisticModel ModelFor(const SampleSet& samples);

inline double ExpectedPoints(double exponent) {
    return 1 / (1 + std::exp(-exponent));
}

// How far expectation and results are apart, on the average of some samples.
struct PredictionError {
    double Logarithmic = 0;  // -(r log p + (1 - r) log (1 - p)): what is minimised
    double Squared = 0;      // (r - p)^2
    int64_t Samples = 0;
};

// The error on the training part or on the part that is held back.
PredictionError MeasureError(const SampleSet& samples, const ScoreArray& scores, const LogisticModel& model,
                             bool isHeldBack);

// Fits the offsets and the scale to the training part by Newton's method.
void FitModel(const SampleSet& samples, const ScoreArray& scores, LogisticModel& model);
