#include "tuning/slopes.h"

#include <algorithm>
#include <cstdlib>

#include "eval/evaluate.h"

namespace {

int16_t ToShort(int score) {
    return static_cast<int16_t>(std::clamp(score, -SCORE_LIMIT, SCORE_LIMIT));
}

void SetWeight(WeightValues weights, int place, int change) {
    weights[static_cast<size_t>(place)] += change;
    SetWeights(weights);
}

// The mean change of those samples that the weight touches, in centipawns; 0 when there are none.
double MeanChange(const SampleSet& samples, const WeightValues& weights, int place, int step) {
    constexpr size_t ENOUGH = 5000;
    const size_t stride = std::max<size_t>(1, samples.size() / ENOUGH);
    std::vector<int> above;
    SetWeight(weights, place, step);
    for (size_t i = 0; i < samples.size(); i += stride) {
        above.push_back(samples[i].IsUsed ? EvaluateSample(samples[i]) : 0);
    }
    SetWeight(weights, place, -step);
    int64_t sum = 0, touched = 0;
    for (size_t i = 0, next = 0; i < samples.size(); i += stride, ++next) {
        const int change = samples[i].IsUsed ? above[next] - EvaluateSample(samples[i]) : 0;
        sum += std::abs(change);
        touched += change != 0 ? 1 : 0;
    }
    return touched == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(touched);
}

// A power of two.
int FindStep(const SampleSet& samples, const WeightValues& weights, int place) {
    constexpr double ENOUGH = 16;  // centipawns
    // Far from where it stands a weight need not do what it does there.
    const int most = std::max(64, std::abs(weights[static_cast<size_t>(place)]) / 2);
    int step = 1;
    while (2 * step <= most && MeanChange(samples, weights, place, step) < ENOUGH) step *= 2;
    return step;
}

}  // namespace

FreeWeights FindSteps(const SampleSet& samples, const WeightValues& weights, std::vector<int> places,
                      const Labour& labour) {
    const SharedArray<int> steps(places.size());
    ShareWork(labour, "finding steps", places.size(), [&](int, size_t begin, size_t end, int64_t* done) {
        for (size_t i = begin; i < end; ++i, ++*done) steps[i] = FindStep(samples, weights, places[i]);
    });
    return {std::move(places), std::vector<int>(steps.begin(), steps.end())};
}

void MeasureSlopes(const SampleSet& samples, const WeightValues& weights, const FreeWeights& freeWeights,
                   bool isFirstTime, const Labour& labour, Slopes& slopes) {
    const size_t count = freeWeights.Count();
    const auto measure = [&](int, size_t begin, size_t end, int64_t* done) {
        std::vector<int> above(end - begin);
        for (size_t weight = 0; weight < count; ++weight) {
            const int place = freeWeights.Places[weight], step = freeWeights.Steps[weight];
            const auto isMeasured = [&](size_t i) {
                return samples[i].IsUsed && (isFirstTime || slopes.Row(i)[weight] != 0);
            };
            SetWeight(weights, place, step);
            for (size_t i = begin; i < end; ++i) {
                if (isMeasured(i)) above[i - begin] = EvaluateSample(samples[i]);
            }
            SetWeight(weights, place, -step);
            for (size_t i = begin; i < end; ++i) {
                if (isMeasured(i))
                    slopes.Row(i)[weight] = ToShort(above[i - begin] - EvaluateSample(samples[i]));
            }
            *done = static_cast<int64_t>((end - begin) * (weight + 1) / count);
        }
    };
    ShareWork(labour, "measuring slopes", samples.size(), measure);
}

std::vector<WeightUse> SumUses(const SampleSet& samples, const Slopes& slopes, size_t weights) {
    std::vector<WeightUse> uses(weights);
    for (size_t i = 0; i < samples.size(); ++i) {
        if (!samples[i].IsUsed) continue;
        const int16_t* const row = slopes.Row(i);
        for (size_t weight = 0; weight < weights; ++weight) {
            const double slope = row[weight];
            uses[weight].Touched += slope != 0 ? 1 : 0;
            uses[weight].Squares += slope * slope;
        }
    }
    return uses;
}

void MeasureScores(const SampleSet& samples, const WeightValues& weights, const Labour& labour,
                   ScoreArray& scores) {
    ShareWork(labour, "evaluating", samples.size(), [&](int, size_t begin, size_t end, int64_t* done) {
        SetWeights(weights);
        for (size_t i = begin; i < end; ++i, ++*done) {
            scores[i] = ToShort(samples[i].IsUsed ? EvaluateSample(samples[i]) : 0);
        }
    });
}
