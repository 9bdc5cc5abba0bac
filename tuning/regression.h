#pragma once

#include <vector>

#include "eval/weights.h"
#include "tuning/linearsystem.h"
#include "tuning/logistic.h"
#include "tuning/samples.h"
#include "tuning/slopes.h"

// The logistic regression of one round, in which every evaluation is taken for linear in the weights.

// Its unknowns are the free weights, in double steps from where the slopes were measured, and behind them the
// offsets of the sources and the share by which the scale grows.
class Regression {
  public:
    Regression(const SampleSet& samples, const ScoreArray& scores, const Slopes& slopes, size_t weights,
               const Labour& labour)
        : samples_(samples), scores_(scores), slopes_(slopes), weights_(weights), labour_(labour) {}

    // The equations of a step of Newton's method from `moves` on, by the training part alone.
    LinearSystem Equations(const std::vector<double>& moves, const LogisticModel& model) const;

  private:
    void AddSample(size_t i, const std::vector<double>& moves, const LogisticModel& model, double* matrix,
                   double* right) const;

    const SampleSet& samples_;
    const ScoreArray& scores_;
    const Slopes& slopes_;
    const size_t weights_;
    const Labour& labour_;
};

// What holds each weight to its start, as information about its double step: as much as that many samples of
// average doubt that the weight touches would tell.
std::vector<double> HoldsOf(double samples, const std::vector<WeightUse>& uses, const LogisticModel& model);

// Adds the holds to the equations. `from` is where the slopes were measured, `moves` how far from there the
// equations stand.
void AddHolds(const std::vector<double>& holds, const FreeWeights& freeWeights, const WeightValues& start,
              const WeightValues& from, const std::vector<double>& moves, LinearSystem& system);

// Rounds the weights one after the other, those of the coarsest unit first; what a weight loses by it the
// others make up for as far as they can. `inverse` is the inverse matrix of the equations.
WeightValues RoundWeights(const WeightValues& from, const FreeWeights& freeWeights, std::vector<double> moves,
                          std::vector<double> inverse);
