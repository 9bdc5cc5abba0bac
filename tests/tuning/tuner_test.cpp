#include "tuning/tuner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "tests/eval/evaltest.h"
#include "tests/support/tempdirectory.h"
#include "tuning/linearsystem.h"
#include "tuning/regression.h"
#include "tuning/tunestate.h"

namespace {

constexpr double SCALE = 0.006, OFFSET = 0.1;

bool IsPawnEnding(const Board& position) {
    return position.PieceMaterial[WHITE] + position.PieceMaterial[BLACK] == 0;
}

// Samples whose results are exactly what some weights foretell, so that these are the best there are.
class TunerTest : public EvalTest {
  protected:
    static constexpr int SAMPLES = 3000 / WORK_DIVISOR;

    TunerTest() : samples_(SAMPLES) {
        for (const char* name : {"ThreatByPush", "HangingPiece", "PassedRank[3]", "KingAttacker[0]",
                                 "PsqKnightOpening[0]", "TrappedBishop", "DriveCorner", "KingCutOffBonus"}) {
            for (int place = 0; place < WEIGHT_COUNT; ++place) {
                if (IsWeightOf(place, name)) options_.Places.push_back(place);
            }
        }
        options_.Start = DefaultWeights();
        options_.Hold = 0.01;
        options_.Rounds = 6;
        labour_.Workers = 2;
        state_.Model.Offsets.resize(1);
    }

    void SetUp() override {
        EvalTest::SetUp();
        size_t next = 0;
        VisitRandomBoards(SAMPLES, 11, [&] {
            Sample& sample = samples_[next];
            sample.Position = board;
            sample.IsUsed = true;
            sample.IsHeldBack = ++next % 10 == 0;
        });
        truth_ = options_.Start;
        int change = 0;
        for (const int place : options_.Places) At(truth_, place) += change++ % 2 == 0 ? 12 : -9;
        Foretell(truth_);
    }

    static int& At(WeightValues& weights, int place) { return weights[static_cast<size_t>(place)]; }

    // Sets the results to what the weights foretell, and the model to the one that was used.
    void Foretell(const WeightValues& weights) {
        SetWeights(weights);
        for (Sample& sample : samples_) {
            const double exponent = SCALE * EvaluateSample(sample) + OFFSET;
            sample.Result = static_cast<float>(ExpectedPoints(exponent));
        }
        BeginTuning(samples_, options_, labour_, state_);
        state_.Model.Scale = SCALE;
    }

    void TuneAll() {
        Tune(samples_, options_, labour_, state_, [](bool) {});
    }

    SampleSet samples_;
    TuningOptions options_;
    Labour labour_;
    TuningState state_;
    WeightValues truth_ = {};
};

TEST_F(TunerTest, FindsTheWeightsThatTheResultsComeFrom) {
    const CurvePoint begin = state_.Curve[0];
    TuneAll();
    const CurvePoint end = state_.Curve[BestRound(state_)];
    EXPECT_LT(end.Training.Squared, begin.Training.Squared / 50);
    EXPECT_LT(end.HeldBack.Squared, begin.HeldBack.Squared / 20);
    EXPECT_NEAR(state_.Model.Offsets[0], OFFSET, 0.005);
    for (const WeightFinding& finding : ExplainWeights(samples_, options_, labour_, state_.Best)) {
        // A few per cent of the samples say enough, where there is no noise but that of rounding.
        if (finding.Touched < 0.02 || SAMPLES < 3000) continue;
        const int unit = IsWeightOf(finding.Place, "KingAttacker") ? 10 : 1;
        EXPECT_NEAR(At(state_.Best, finding.Place), At(truth_, finding.Place), 2 * unit)
            << WeightName(finding.Place);
    }
}

TEST_F(TunerTest, WeightsStayWithoutReasonToMove) {
    // 1. Those that aren't free; and free ones that no sample knows.
    for (Sample& sample : samples_) sample.IsUsed = sample.IsUsed && !IsPawnEnding(sample.Position);
    Foretell(truth_);
    TuneAll();
    for (int place = 0; place < WEIGHT_COUNT; ++place) {
        const bool isFree =
            std::find(options_.Places.begin(), options_.Places.end(), place) != options_.Places.end();
        if (!isFree || IsWeightOf(place, "KingCutOffBonus")) {
            EXPECT_EQ(At(state_.Best, place), At(options_.Start, place)) << WeightName(place);
        }
    }
    // 2. All of them, when the hold is stronger than the samples.
    options_.Hold = 1e9;
    Foretell(truth_);
    TuneAll();
    EXPECT_EQ(state_.Best, options_.Start);
}

TEST_F(TunerTest, ThePartThatIsHeldBackOnlyJudges) {
    options_.Rounds = 2;
    TuneAll();
    const WeightValues weights = state_.Weights;
    for (Sample& sample : samples_) {
        if (sample.IsHeldBack) sample.Result = 1 - sample.Result;
    }
    BeginTuning(samples_, options_, labour_, state_);
    state_.Model.Scale = SCALE;
    TuneAll();
    EXPECT_EQ(state_.Weights, weights);
    EXPECT_GT(state_.Curve.back().HeldBack.Squared, state_.Curve.back().Training.Squared * 2);
}

TEST_F(TunerTest, WorkThatWasStoppedGoesOn) {
    const TempDirectory directory;
    const std::string path = directory.FilePath("state");
    options_.Rounds = 3;
    const TuningState begin = state_;
    TuneAll();
    const TuningState whole = state_;
    EXPECT_FALSE(LoadState(path, options_, state_));

    state_ = begin;
    for (options_.Rounds = 1; options_.Rounds <= 3; ++options_.Rounds) {
        TuneAll();
        SaveState(path, options_, state_);
        state_ = begin;
        ASSERT_TRUE(LoadState(path, options_, state_));
    }
    EXPECT_EQ(state_.Curve.size(), whole.Curve.size());
    // Slopes that were 0 are measured again at each start, so a few weights may differ by a little.
    EXPECT_NEAR(state_.Curve.back().Training.Logarithmic, whole.Curve.back().Training.Logarithmic, 1e-6);

    // Other errands and damaged files are refused, and change nothing.
    const std::string text = directory.ReadFile("state");
    const auto refuses = [&](const TuningOptions& options, const TuningState& from) {
        TuningState state = from;
        EXPECT_THROW(LoadState(path, options, state), std::runtime_error);
        EXPECT_EQ(state.Curve.size(), 1u);
    };
    TuningOptions others = options_;
    others.Places.pop_back();
    refuses(others, begin);
    others = options_;
    ++others.Start[5];
    refuses(others, begin);
    TuningState elsewhere = begin;
    elsewhere.Curve[0].HeldBack.Logarithmic += 1e-12;
    refuses(options_, elsewhere);
    const std::string wild = text.substr(0, text.rfind('\n', text.size() - 2) + 1);
    for (const std::string& damaged :
         {std::string(), text.substr(0, text.size() / 2), "x" + text,
          wild + std::to_string(options_.Start[WEIGHT_COUNT - 1]) + " 99999 0 0\n"}) {
        directory.WriteFile("state", damaged);
        refuses(options_, begin);
    }
    EXPECT_THROW(SaveState(directory.FilePath("absent/state"), options_, state_), std::runtime_error);
}

TEST_F(TunerTest, WithoutAPartThatIsHeldBackTheOtherJudges) {
    for (Sample& sample : samples_) sample.IsHeldBack = false;
    options_.Rounds = 1;
    BeginTuning(samples_, options_, labour_, state_);
    TuneAll();
    EXPECT_EQ(BestRound(state_), 1u);
    EXPECT_EQ(state_.Best, state_.Weights);
}

TEST(PatienceTest, TwoRoundsWithoutGainAreEnough) {
    TuningOptions options;
    options.Rounds = 9;
    TuningState state;
    for (const double error : {0.5, 0.4, 0.41, 0.42}) {
        EXPECT_TRUE(state.Curve.size() < 2 || IsUnderWay(state, options));
        CurvePoint point{};
        point.HeldBack = {error, error, 10};
        state.Curve.push_back(point);
    }
    EXPECT_FALSE(IsUnderWay(state, options));
    state.Curve.back().HeldBack.Logarithmic = 0.39;
    EXPECT_TRUE(IsUnderWay(state, options));
    state.IsExhausted = true;
    EXPECT_FALSE(IsUnderWay(state, options));
}

// What rounding takes from one weight another gives back.
TEST(RoundWeightsTest, TheOthersMakeUpForWhatIsLost) {
    const FreeWeights freeWeights{{3, 7}, {1, 64}};
    // Both do the same, so that only their sum is known well.
    LinearSystem system(2);
    system.At(0, 0) = system.At(1, 1) = 1.001;
    system.At(1, 0) = 1;
    ASSERT_TRUE(system.Factor());
    const WeightValues rounded = RoundWeights({}, freeWeights, {0.2, 0}, system.Inverse());
    // 0.4 of a weight is rounded to 0; the other then goes 0.2 double steps.
    EXPECT_EQ(rounded[3], 0);
    EXPECT_NEAR(rounded[7], 0.2 * 128, 1);
}

TEST(LinearSystemTest, Solves) {
    constexpr size_t SIZE = 7;
    // A matrix with a heavy diagonal is positive definite.
    const auto entry = [](size_t row, size_t column) {
        return row == column ? 10.0 + static_cast<double>(row) : std::sin(static_cast<double>(row + column));
    };
    LinearSystem system(SIZE);
    for (size_t row = 0; row < SIZE; ++row) {
        for (size_t column = 0; column <= row; ++column) system.At(row, column) = entry(row, column);
        system.Right(row) = 1.0 + static_cast<double>(row * row);
    }
    ASSERT_TRUE(system.Factor());
    const std::vector<double> solution = system.Solve(), inverse = system.Inverse();
    for (size_t row = 0; row < SIZE; ++row) {
        double sum = 0, unit = 0;
        for (size_t column = 0; column < SIZE; ++column) {
            sum += entry(row, column) * solution[column];
            unit += entry(row, column) * inverse[column * SIZE + row];
        }
        EXPECT_NEAR(sum, 1.0 + static_cast<double>(row * row), 1e-9);
        EXPECT_NEAR(unit, 1, 1e-9);
    }
    LinearSystem indefinite(2);
    indefinite.At(0, 0) = indefinite.At(1, 1) = 1;
    indefinite.At(1, 0) = 2;
    EXPECT_FALSE(indefinite.Factor());
}

}  // namespace
