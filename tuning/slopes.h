#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "eval/weights.h"
#include "tuning/samples.h"

// How the evaluation of each sample follows each weight: found by trying, so that the tuner need know nothing
// about what a term computes.

// The weights that are fitted: their places, and how far each is moved to either side to see what it does.
struct FreeWeights {
    std::vector<int> Places;
    std::vector<int> Steps;

    size_t Count() const { return Places.size(); }
};

// Finds steps about the weights that change the samples they touch by some sixteen centipawns from one side
// to the other: the rounding of the evaluation is then small beside it.
FreeWeights FindSteps(const SampleSet& samples, const WeightValues& weights, std::vector<int> places,
                      const Labour& labour);

// One row a sample: what its evaluation gains between weight - step and weight + step, in centipawns from
// White's view. Rows of samples that count for nothing are zeros.
class Slopes {
  public:
    Slopes(size_t samples, size_t weights) : weights_(weights), differences_(samples * weights) {}

    const int16_t* Row(size_t sample) const { return &differences_[sample * weights_]; }
    int16_t* Row(size_t sample) { return &differences_[sample * weights_]; }

  private:
    size_t weights_;
    SharedArray<int16_t> differences_;
};

// Measures all of them, or only those that were not 0 when they were last measured, about other weights: a
// term that a position doesn't have comes no nearer by its weight.
void MeasureSlopes(const SampleSet& samples, const WeightValues& weights, const FreeWeights& freeWeights,
                   bool isFirstTime, const Labour& labour, Slopes& slopes);

// What a weight does to the samples that count.
struct WeightUse {
    int64_t Touched = 0;  // samples whose slope is not 0
    double Squares = 0;   // the sum of the squares of their slopes

    // The square of the slope of a usual sample that the weight touches; a guess where there is none.
    double UsualSquare() const { return Touched > 0 ? Squares / static_cast<double>(Touched) : 256; }
};

std::vector<WeightUse> SumUses(const SampleSet& samples, const Slopes& slopes, size_t weights);

// The evaluations of all samples, in centipawns from White's view.
using ScoreArray = SharedArray<int16_t>;
void MeasureScores(const SampleSet& samples, const WeightValues& weights, const Labour& labour,
                   ScoreArray& scores);
