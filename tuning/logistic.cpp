#include "tuning/logistic.h"

#include <algorithm>

#include "tuning/linearsystem.h"

LogisticModel ModelFor(const SampleSet& samples) {
    int sources = 1;
    for (const Sample& sample : samples) sources = std::max(sources, sample.Source + 1);
    LogisticModel model;
    model.Offsets.resize(static_cast<size_t>(sources));
    return model;
}

PredictionError MeasureError(const SampleSet& samples, const ScoreArray& scores, const LogisticModel& model,
                             bool isHeldBack) {
    PredictionError error;
    for (size_t i = 0; i < samples.size(); ++i) {
        const Sample& sample = samples[i];
        if (!sample.IsUsed || sample.IsHeldBack != isHeldBack) continue;
        const double exponent = model.Exponent(scores[i], sample.Source), result = sample.Result;
        const double difference = result - ExpectedPoints(exponent);
        // log(1 + e^x) without overflow.
        const double log = std::max(exponent, 0.0) + std::log1p(std::exp(-std::abs(exponent)));
        error.Logarithmic += log - result * exponent;
        error.Squared += difference * difference;
        ++error.Samples;
    }
    const auto count = static_cast<double>(std::max<int64_t>(1, error.Samples));
    error.Logarithmic /= count;
    error.Squared /= count;
    return error;
}

void FitModel(const SampleSet& samples, const ScoreArray& scores, LogisticModel& model) {
    constexpr int ITERATIONS = 8;
    const size_t sources = model.Offsets.size();
    for (int iteration = 0; iteration < ITERATIONS; ++iteration) {
        // The offsets, then the scale. A little on the diagonal keeps a source without samples where it is.
        LinearSystem system(sources + 1);
        for (size_t i = 0; i <= sources; ++i) system.At(i, i) = 1e-6;
        for (size_t i = 0; i < samples.size(); ++i) {
            const Sample& sample = samples[i];
            if (!sample.IsUsed || sample.IsHeldBack) continue;
            const double score = scores[i];
            const double expected = ExpectedPoints(model.Exponent(score, sample.Source));
            const double gap = sample.Result - expected, weight = expected * (1 - expected);
            system.Right(sample.Source) += gap;
            system.At(sample.Source, sample.Source) += weight;
            system.Right(sources) += gap * score;
            system.At(sources, sample.Source) += weight * score;
            system.At(sources, sources) += weight * score * score;
        }
        if (!system.Factor()) return;
        const std::vector<double> change = system.Solve();
        for (size_t i = 0; i < sources; ++i) model.Offsets[i] += change[i];
        model.Scale += change[sources];
    }
}
