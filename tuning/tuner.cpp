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

    // The equations about the weights, without the hold.
    LinearSystem EquationsAt(const WeightValues& weights, const LogisticModel& model);

    const FreeWeights& Free() const { return freeWeights_; }
    const int16_t* SlopesOf(size_t sample) const { return slopes_.Row(sample); }

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

LinearSystem Rounds::EquationsAt(const WeightValues& weights, const LogisticModel& model) {
    Measure(weights);
    const Regression regression(samples_, scores_, slopes_, freeWeights_.Count(), labour_);
    return regression.Equations(std::vector<double>(freeWeights_.Count()), model);
}

// The weights that the regression about the present ones wants, none farther away than a double step.
WeightValues Rounds::Propose(const TuningState& state) {
    constexpr int ITERATIONS = 3;
    Measure(state.Weights);
    const Regression regression(samples_, scores_, slopes_, freeWeights_.Count(), labour_);
    LogisticModel model = state.Model;
    std::vector<double> moves(freeWeights_.Count()), inverse;
    for (int iteration = 0; iteration < ITERATIONS; ++iteration) {
        LinearSystem system = regression.Equations(moves, model);
        AddHold(options_.Hold, freeWeights_, options_.Start, state.Weights, moves, model, system);
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
        for (size_t i = 0; i < WEIGHT_COUNT; ++i) proposal[i] = (proposal[i] + state.Weights[i]) / 2;
    }
    return false;
}

}  // namespace

size_t BestRound(const TuningState& state) {
    const auto best = std::min_element(state.Curve.begin(), state.Curve.end(),
                                       [](const CurvePoint& a, const CurvePoint& b) {
                                           return a.HeldBack.Logarithmic < b.HeldBack.Logarithmic;
                                       });
    return static_cast<size_t>(best - state.Curve.begin());
}

void BeginTuning(const SampleSet& samples, const TuningOptions& options, const Labour& labour,
                 TuningState& state) {
    state.Weights = state.Best = options.Start;
    ScoreArray scores(samples.size());
    MeasureScores(samples, state.Weights, labour, scores);
    FitModel(samples, scores, state.Model);
    state.Curve = {{MeasureError(samples, scores, state.Model, false),
                    MeasureError(samples, scores, state.Model, true), 0}};
    state.IsDone = false;
}

void Tune(const SampleSet& samples, const TuningOptions& options, const Labour& labour, TuningState& state,
          const std::function<void()>& roundDone) {
    constexpr size_t PATIENCE = 2;  // rounds
    const auto isDue = [&] {
        return !state.IsDone && static_cast<int>(state.Curve.size()) <= options.Rounds;
    };
    if (!isDue()) return;
    Rounds rounds(samples, options, labour);
    while (isDue()) {
        state.IsDone = !rounds.TryOne(state) || state.Curve.size() > BestRound(state) + PATIENCE + 1;
        roundDone();
    }
}

std::vector<WeightFinding> ExplainWeights(const SampleSet& samples, const TuningOptions& options,
                                          const Labour& labour, const WeightValues& weights,
                                          const LogisticModel& model) {
    // 1. The equations at the end, without and with the hold.
    Rounds rounds(samples, options, labour);
    LinearSystem system = rounds.EquationsAt(weights, model);
    const FreeWeights& freeWeights = rounds.Free();
    const size_t count = freeWeights.Count(), size = system.Size();
    std::vector<WeightFinding> findings(count);
    for (size_t i = 0; i < count; ++i) findings[i].Knowledge = system.At(i, i) / HoldOf(options.Hold, model);
    AddHold(options.Hold, freeWeights, options.Start, weights, std::vector<double>(count), model, system);
    if (!system.Factor()) return {};
    const std::vector<double> inverse = system.Inverse();

    // 2. What each weight does.
    const auto samplesInAll = static_cast<double>(std::max<size_t>(1, samples.size()));
    for (size_t i = 0; i < count; ++i) {
        int64_t touched = 0;
        double squares = 0;
        for (size_t sample = 0; sample < samples.size(); ++sample) {
            const double slope = rounds.SlopesOf(sample)[i];
            touched += slope != 0 ? 1 : 0;
            squares += slope * slope;
        }
        WeightFinding& finding = findings[i];
        finding.Place = freeWeights.Places[i];
        const auto place = static_cast<size_t>(finding.Place);
        const double doubleSteps = (weights[place] - options.Start[place]) / (2.0 * freeWeights.Steps[i]);
        finding.Touched = static_cast<double>(touched) / samplesInAll;
        finding.Effect = std::abs(doubleSteps) * std::sqrt(squares / samplesInAll);
        finding.Deviation = std::sqrt(inverse[i * size + i]) * 2 * freeWeights.Steps[i];
    }
    return findings;
}
