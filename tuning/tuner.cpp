#include "tuning/tuner.h"

#include <algorithm>
#include <cmath>

#include "tuning/regression.h"

namespace {

int CountChanges(const WeightValues& before, const WeightValues& after) {
    int count = 0;
    for (size_t i = 0; i < WEIGHT_COUNT; ++i) count += before[i] != after[i] ? 1 : 0;
    return count;
}

// The rounds of one errand.
class Rounds {
  public:
    Rounds(const SampleSet& samples, const TuningOptions& options, const Labour& labour)
        : samples_(samples),
          options_(options),
          labour_(labour),
          freeWeights_(FindSteps(samples, options.Start, options.Places, labour)),
          slopes_(samples.size(), freeWeights_.Count()),
          scores_(samples.size()) {}

    // False when no step makes the error on the training part less.
    bool TryOne(TuningState& state);

    // The equations about the weights, without the holds; the model is fitted to them first.
    LinearSystem EquationsAt(const WeightValues& weights, LogisticModel& model);

    // By the slopes as they were last measured.
    std::vector<WeightUse> Uses() const { return SumUses(samples_, slopes_, freeWeights_.Count()); }

    const FreeWeights& Free() const { return freeWeights_; }

  private:
    void Measure(const WeightValues& weights);
    WeightValues Propose(const TuningState& state);

    const SampleSet& samples_;
    const TuningOptions& options_;
    const Labour& labour_;
    FreeWeights freeWeights_;
    Slopes slopes_;
    ScoreArray scores_;
    bool isFirstTime_ = true;
};

void Rounds::Measure(const WeightValues& weights) {
    MeasureScores(samples_, weights, labour_, scores_);
    MeasureSlopes(samples_, weights, freeWeights_, isFirstTime_, labour_, slopes_);
    isFirstTime_ = false;
}

LinearSystem Rounds::EquationsAt(const WeightValues& weights, LogisticModel& model) {
    Measure(weights);
    FitModel(samples_, scores_, model);
    const Regression regression(samples_, scores_, slopes_, freeWeights_.Count(), labour_);
    return regression.Equations(std::vector<double>(freeWeights_.Count()), model);
}

// The weights that the regression about the present ones wants, none farther away than a double step before
// they are rounded.
WeightValues Rounds::Propose(const TuningState& state) {
    constexpr int ITERATIONS = 3;
    Measure(state.Weights);
    const Regression regression(samples_, scores_, slopes_, freeWeights_.Count(), labour_);
    const std::vector<WeightUse> uses = Uses();
    LogisticModel model = state.Model;
    std::vector<double> moves(freeWeights_.Count()), inverse;
    for (int iteration = 0; iteration < ITERATIONS; ++iteration) {
        LinearSystem system = regression.Equations(moves, model);
        const std::vector<double> holds = HoldsOf(options_.Hold, uses, model);
        AddHolds(holds, freeWeights_, options_.Start, state.Weights, moves, system);
        if (!system.Factor()) return state.Weights;
        const std::vector<double> change = system.Solve();
        for (size_t i = 0; i < moves.size(); ++i) moves[i] = std::clamp(moves[i] + change[i], -1.0, 1.0);
        for (size_t i = 0; i < model.Offsets.size(); ++i) model.Offsets[i] += change[moves.size() + i];
        model.Scale *= 1 + std::clamp(change.back(), -0.5, 0.5);
        if (iteration + 1 == ITERATIONS) inverse = system.Inverse();
    }
    return RoundWeights(state.Weights, freeWeights_, std::move(moves), std::move(inverse));
}

bool Rounds::TryOne(TuningState& state) {
    WeightValues proposal = Propose(state);
    // A step that is too long is taken back by half, twice at most.
    for (int attempt = 0; attempt < 3; ++attempt) {
        MeasureScores(samples_, proposal, labour_, scores_);
        LogisticModel model = state.Model;
        FitModel(samples_, scores_, model);
        const CurvePoint point{MeasureError(samples_, scores_, model, false),
                               MeasureError(samples_, scores_, model, true),
                               CountChanges(state.Weights, proposal)};
        if (point.Training.Logarithmic < state.Curve.back().Training.Logarithmic) {
            state.Weights = proposal;
            state.Model = model;
            state.Curve.push_back(point);
            if (BestRound(state) + 1 == state.Curve.size()) state.Best = proposal;
            return true;
        }
        for (size_t i = 0; i < WEIGHT_COUNT; ++i) {
            proposal[i] = state.Weights[i] + (proposal[i] - state.Weights[i]) / 2;
        }
    }
    return false;
}

}  // namespace

const PredictionError& JudgeOf(const CurvePoint& point) {
    return point.HeldBack.Samples > 0 ? point.HeldBack : point.Training;
}

size_t BestRound(const TuningState& state) {
    const auto best = std::min_element(state.Curve.begin(), state.Curve.end(),
                                       [](const CurvePoint& a, const CurvePoint& b) {
                                           return JudgeOf(a).Logarithmic < JudgeOf(b).Logarithmic;
                                       });
    return static_cast<size_t>(best - state.Curve.begin());
}

void BeginTuning(const SampleSet& samples, const TuningOptions& options, const Labour& labour,
                 TuningState& state) {
    state.Weights = state.Best = options.Start;
    state.Model = ModelFor(samples);
    ScoreArray scores(samples.size());
    MeasureScores(samples, state.Weights, labour, scores);
    FitModel(samples, scores, state.Model);
    state.Curve = {{MeasureError(samples, scores, state.Model, false),
                    MeasureError(samples, scores, state.Model, true), 0}};
    state.IsExhausted = false;
}

bool IsUnderWay(const TuningState& state, const TuningOptions& options) {
    constexpr size_t PATIENCE = 2;  // rounds
    if (state.IsExhausted || state.Curve.size() > static_cast<size_t>(options.Rounds)) return false;
    return state.Curve.size() <= BestRound(state) + PATIENCE;
}

void Tune(const SampleSet& samples, const TuningOptions& options, const Labour& labour, TuningState& state,
          const std::function<void(bool isGain)>& roundDone) {
    if (!IsUnderWay(state, options)) return;
    Rounds rounds(samples, options, labour);
    while (IsUnderWay(state, options)) {
        state.IsExhausted = !rounds.TryOne(state);
        roundDone(!state.IsExhausted);
    }
}

std::vector<WeightFinding> ExplainWeights(const SampleSet& samples, const TuningOptions& options,
                                          const Labour& labour, const WeightValues& weights) {
    // 1. The equations at the end, without and with the holds.
    Rounds rounds(samples, options, labour);
    LogisticModel model = ModelFor(samples);
    LinearSystem system = rounds.EquationsAt(weights, model);
    const FreeWeights& freeWeights = rounds.Free();
    const std::vector<WeightUse> uses = rounds.Uses();
    const std::vector<double> holds = HoldsOf(options.Hold, uses, model);
    const size_t count = freeWeights.Count(), size = system.Size();
    std::vector<WeightFinding> findings(count);
    for (size_t i = 0; i < count; ++i) findings[i].Knowledge = system.At(i, i) / holds[i];
    AddHolds(holds, freeWeights, options.Start, weights, std::vector<double>(count), system);
    if (!system.Factor()) return {};
    const std::vector<double> inverse = system.Inverse();

    // 2. What each weight does.
    const auto used = static_cast<double>(
        std::count_if(samples.begin(), samples.end(), [](const Sample& sample) { return sample.IsUsed; }));
    for (size_t i = 0; i < count; ++i) {
        WeightFinding& finding = findings[i];
        finding.Place = freeWeights.Places[i];
        const auto place = static_cast<size_t>(finding.Place);
        const double doubleStep = 2.0 * freeWeights.Steps[i];
        finding.Touched = static_cast<double>(uses[i].Touched) / used;
        finding.Effect =
            std::abs(weights[place] - options.Start[place]) / doubleStep * std::sqrt(uses[i].Squares / used);
        finding.Deviation = std::sqrt(inverse[i * size + i]) * doubleStep;
    }
    return findings;
}
