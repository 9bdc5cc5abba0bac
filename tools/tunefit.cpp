#include "tools/tunefit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "eval/weights.h"
#include "tools/progress.h"
#include "tools/tuneshow.h"
#include "tuning/errorcurve.h"
#include "tuning/tuner.h"
#include "tuning/tunestate.h"

namespace {

// As printf wants it.
long long Wide(int64_t number) {
    return number;
}

// Labour that shows on the error stream how far it is.
Labour LabourOf(int workers, Progress& progress) {
    const auto tell = [&progress](const char* what, double done) {
        if (!progress.IsDue()) return;
        char text[100];
        std::snprintf(text, sizeof text, "%s: %.0f %%, %.0f s", what, done * 100, progress.Seconds());
        progress.Show(text);
    };
    return {workers, tell};
}

std::unique_ptr<SampleSet> ReadPositions(const TuneRequest& request, const Labour& labour,
                                         Progress& progress) {
    ReadingReport report;
    auto samples = ReadSamples(request.Positions, request.Chosen, labour, report);
    progress.Clear();
    std::printf(
        "Positions: %lld lines, without result %lld; %zu taken, of them impossible %lld, not quiet %lld, "
        "decided %lld\n",
        Wide(report.Lines), Wide(report.WithoutResult), samples->size(), Wide(report.Impossible),
        Wide(report.Unquiet), Wide(report.Decided));
    if (std::none_of(samples->begin(), samples->end(),
                     [](const Sample& sample) { return sample.IsUsed && !sample.IsHeldBack; })) {
        throw std::runtime_error("there is nothing to fit to");
    }
    return samples;
}

// Every name must be one of the list.
void CheckNames(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        bool isKnown = false;
        for (int place = 0; place < WEIGHT_COUNT; ++place) isKnown = isKnown || IsWeightOf(place, name);
        if (!isKnown) throw std::runtime_error("there is no weight of the name " + name);
    }
}

std::vector<int> FreePlaces(const TuneRequest& request) {
    CheckNames(request.Keep);
    CheckNames(request.Only);
    std::vector<int> places;
    for (int place = 0; place < WEIGHT_COUNT; ++place) {
        const auto isNamed = [place](const std::string& name) { return IsWeightOf(place, name); };
        const bool isWanted =
            request.Only.empty() || std::any_of(request.Only.begin(), request.Only.end(), isNamed);
        const bool isKept = std::any_of(request.Keep.begin(), request.Keep.end(), isNamed);
        if (isWanted && !isKept) places.push_back(place);
    }
    if (places.empty()) throw std::runtime_error("all weights are kept: there is nothing to fit");
    return places;
}

void PrintError(const char* name, const PredictionError& error) {
    std::printf("%s %.6f (squared %.6f)", name, error.Logarithmic, error.Squared);
}

void PrintRound(size_t round, const CurvePoint& point) {
    std::printf("Round %zu:", round);
    PrintError(" fitted", point.Training);
    PrintError(", held back", point.HeldBack);
    std::printf(", %d weights changed\n", point.Changed);
    std::fflush(stdout);
}

void PrintModel(const LogisticModel& model) {
    std::printf("A pawn is worth %.3f of the logarithm of the odds; White's start, in centipawns:",
                100 * model.Scale);
    for (const double offset : model.Offsets) std::printf(" %.0f", offset / model.Scale);
    std::printf("\n");
}

void KeepWeights(const std::string& path, const WeightValues& weights) {
    if (!WriteWeights(path.c_str(), weights)) throw std::runtime_error("can't write " + path);
}

// Neither may be written over what is read.
void CheckOutput(const std::string& output, const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
        std::error_code error;
        if (std::filesystem::equivalent(input, output, error)) {
            throw std::runtime_error(output + " is read and can't be written to");
        }
    }
}

}  // namespace

void SamplePositions(const SampleRequest& request) {
    CheckOutput(request.Output, request.Games);
    for (const std::string& path : request.Games) {
        if (!std::ifstream(path)) throw std::runtime_error("can't read " + path);
    }
    std::ofstream file(request.Output);
    SamplingReport report;
    for (const std::string& path : request.Games) {
        SampleGames(path, request.Options, report, [&](const std::string& line) { file << line << '\n'; });
    }
    file.close();
    if (!file) throw std::runtime_error("can't write " + request.Output);
    std::printf("%lld positions out of %lld games, of which %lld are broken and %lld without result\n",
                Wide(report.Positions), Wide(report.Games), Wide(report.Broken), Wide(report.WithoutResult));
}

void FitWeights(const TuneRequest& request) {
    // 1. What is to be done.
    Progress progress;
    const Labour labour = LabourOf(request.Workers, progress);
    TuningOptions options{StartWeights(request.Start), FreePlaces(request), request.Rounds, request.Hold};
    for (const std::string& output : {request.Output, request.Curve}) CheckOutput(output, request.Positions);
    SetWeights(options.Start);
    const auto samples = ReadPositions(request, labour, progress);
    TuningState state;
    BeginTuning(*samples, options, labour, state);
    progress.Clear();
    PrintModel(state.Model);
    if (!request.State.empty() && LoadState(request.State, options, state)) {
        std::printf("Going on behind round %zu of %s\n", state.Curve.size() - 1, request.State.c_str());
    }
    for (size_t round = 0; round < state.Curve.size(); ++round) PrintRound(round, state.Curve[round]);

    // 2. The rounds; what is written behind each can be used at once.
    const auto keepRound = [&](bool isGain) {
        progress.Clear();
        if (isGain) {
            PrintRound(state.Curve.size() - 1, state.Curve.back());
        } else {
            std::printf("No step makes the error less\n");
        }
        if (!request.State.empty()) SaveState(request.State, options, state);
        if (!request.Curve.empty()) DrawErrorCurve(request.Curve, state.Curve);
        KeepWeights(request.Output, state.Best);
    };
    KeepWeights(request.Output, state.Best);
    Tune(*samples, options, labour, state, keepRound);

    // 3. What has come of it.
    const auto findings = ExplainWeights(*samples, options, labour, state.Best);
    progress.Clear();
    std::printf("The weights of round %zu have been written to %s\n", BestRound(state),
                request.Output.c_str());
    ExplainFindings(findings, options.Start, state.Best);
}

void ShowError(const TuneRequest& request) {
    Progress progress;
    const Labour labour = LabourOf(request.Workers, progress);
    // The positions are made quiet by the built-in weights, so that all weights are asked about the same.
    SetWeights(DefaultWeights());
    const auto samples = ReadPositions(request, labour, progress);
    TuningOptions options;
    options.Start = StartWeights(request.Start);
    TuningState state;
    BeginTuning(*samples, options, labour, state);
    progress.Clear();
    PrintModel(state.Model);
    PrintError("Fitted part:", state.Curve[0].Training);
    PrintError("; held back:", state.Curve[0].HeldBack);
    std::printf("\n");
}
