#pragma once

#include <functional>
#include <vector>

#include "eval/weights.h"
#include "tuning/logistic.h"
#include "tuning/samples.h"
#include "tuning/slopes.h"

// Fits the weights to the results of games. A round measures how every evaluation follows every weight, takes
// it for linear as far as the steps reach, and solves the logistic regression that this makes (Newton's
// method). What is not linear comes out in the following rounds.

struct TuningOptions {
    WeightValues Start = {};  // where the weights come from, and stay when the data say nothing about them
    std::vector<int> Places;  // the weights that may change
    int Rounds = 10;
    // How strongly a weight holds to its start: as if so many samples that it touches had agreed with it
    // there.
    double Hold = 100;
};

struct CurvePoint {
    PredictionError Training, HeldBack;
    int Changed;  // weights that are not where the round before had them
};

// Where the work stands between two rounds.
struct TuningState {
    WeightValues Weights = {};
    WeightValues Best = {};  // those of BestRound
    LogisticModel Model;
    std::vector<CurvePoint> Curve;  // the first is that of the start
    bool IsExhausted = false;       // no step has made the error on the training part less
};

// The error that judges: that of the part that is held back, or of the other one where nothing is.
const PredictionError& JudgeOf(const CurvePoint& point);

// The place in the curve where it is least.
size_t BestRound(const TuningState& state);

// Sets the state to the beginning: the start weights, the scale and the offsets that suit them best. These
// are fitted along with the weights: what a centipawn is must be held by weights that stay.
void BeginTuning(const SampleSet& samples, const TuningOptions& options, const Labour& labour,
                 TuningState& state);

// Whether there is another round to do: fewer are done than were asked for, the training part has more to
// give, and the part that judges has gained within the last two.
bool IsUnderWay(const TuningState& state, const TuningOptions& options);

// Does the rounds that are left; calls `roundDone` behind each, also behind one that has gained nothing and
// is not kept.
void Tune(const SampleSet& samples, const TuningOptions& options, const Labour& labour, TuningState& state,
          const std::function<void(bool isGain)>& roundDone);

// What the data say about a free weight.
struct WeightFinding {
    int Place;
    double Touched;    // share of the samples that the weight touches, 0..1
    double Effect;     // centipawns: root mean square, over all samples, of what the change has done to them
    double Deviation;  // standard deviation of the weight by the data and by its hold
    double Knowledge;  // information of the data over that of the hold; below 1 the data are the weaker
};

// By place; `weights` are those that came out.
std::vector<WeightFinding> ExplainWeights(const SampleSet& samples, const TuningOptions& options,
                                          const Labour& labour, const WeightValues& weights);
