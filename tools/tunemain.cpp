// kestrovan-tune: fits the weights of the evaluation to the results of games, and shows what they are.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "eval/bitbase.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "tools/toolmain.h"
#include "tools/tunefit.h"
#include "tools/tuneshow.h"

namespace {

constexpr char FILE_OF_WEIGHTS[] = "A file of weights (values.txt); without it, the built-in ones";

CLI::App* AddReader(CLI::App& app, TuneRequest& request, const char* name, const char* description) {
    CLI::App* command = app.add_subcommand(name, description);
    command
        ->add_option("positions", request.Positions,
                     "Files of positions with the results of their games (EPD)")
        ->required();
    command->add_option("--start", request.Start, FILE_OF_WEIGHTS);
    command
        ->add_option("--positions", request.Chosen.Limit, "The most positions, spread evenly over the files")
        ->check(CLI::Range(int64_t{1}, int64_t{1'000'000'000}));
    command
        ->add_option("--held-back", request.Chosen.HeldBack,
                     "Percent of the positions that judge and don't shape")
        ->check(CLI::Range(0, 90))
        ->capture_default_str();
    command
        ->add_option("--decided", request.Chosen.Decided,
                     "Centipawns; positions that stand higher for a side are left out")
        ->check(CLI::Range(1, 30000))
        ->capture_default_str();
    command
        ->add_option("--scores", request.Chosen.Scores,
                     "Share that the score of a search (ce) has in the result, where a position has one")
        ->check(CLI::Range(0.0, 1.0))
        ->capture_default_str();
    command->add_option("--workers", request.Workers, "Processes")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    return command;
}

CLI::App* AddFit(CLI::App& app, TuneRequest& request) {
    CLI::App* fit = AddReader(app, request, "fit", "Find weights that foretell the results best");
    fit->add_option("-o,--output", request.Output, "The file of weights")->capture_default_str();
    fit->add_option("--state", request.State,
                    "A file that keeps the state: the same command goes on from it");
    fit->add_option("--curve", request.Curve, "A picture of the error by round (SVG)");
    fit->add_option("--keep", request.Keep, "Weights that stay as they are, by the names of the list")
        ->delimiter(',')
        ->allow_extra_args(false);
    fit->add_option("--only", request.Only, "The weights that may change; all without it")
        ->delimiter(',')
        ->allow_extra_args(false);
    fit->add_option("--rounds", request.Rounds, "The most rounds")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    fit->add_option("--hold", request.Hold,
                    "How strongly weights hold to their start: as if so many positions agreed with it")
        ->check(CLI::Range(0.001, 1e9))
        ->capture_default_str();
    return fit;
}

CLI::App* AddSample(CLI::App& app, SampleRequest& request) {
    CLI::App* sample = app.add_subcommand("sample", "Take positions with results out of games");
    sample->add_option("games", request.Games, "Files of games (PGN)")->required();
    sample->add_option("-o,--output", request.Output, "The file of positions (EPD)")->required();
    SamplingOptions& options = request.Options;
    sample->add_option("--skip", options.Skip, "Plies at the beginning that are left out")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    sample->add_option("--last", options.Last, "Plies at the end that are left out")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    sample->add_option("--each", options.Each, "One of so many positions is taken, by chance")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    sample->add_option("--seed", options.Seed, "Number that sets the chance")->capture_default_str();
    return sample;
}

// Reads the command line and does what it says; returns the exit status.
int Run(int argc, char** argv) {
    InitPawnBitbase();
    InitWeights();
    AllocatePawnHash();
    TuneRequest request;
    SampleRequest sampleRequest;
    request.Workers = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 256u));
    std::string first, second;
    CLI::App app(
        "Fits the weights of Kestrovan's evaluation to the results of games, and shows what they are.",
        "kestrovan-tune");
    app.require_subcommand(1);
    const CLI::App* fit = AddFit(app, request);
    const CLI::App* error = AddReader(app, request, "error", "Show how well weights foretell the results");
    const CLI::App* sample = AddSample(app, sampleRequest);
    CLI::App* list = app.add_subcommand("list", "Show the weights with their names and meanings");
    list->add_option("weights", first, FILE_OF_WEIGHTS);
    CLI::App* compare = app.add_subcommand("compare", "Show the weights in which two files differ");
    compare->add_option("second", second, "A file of weights")->required();
    compare->add_option("first", first, "What it is compared with; without it, the built-in weights");
    std::vector<std::string> targets;
    CLI::App* mix = app.add_subcommand("mix", "Go a part of the way from some weights to others");
    mix->add_option("targets", targets, "FILE:SHARE for each of the others, as values.txt:0.3")->required();
    mix->add_option("--start", first, FILE_OF_WEIGHTS);
    mix->add_option("-o,--output", second, "The file of weights that comes of it")->required();
    CLI::App* adopt = app.add_subcommand("adopt", "Make the weights of a file the built-in ones");
    adopt->add_option("weights", first, "The file of weights")->required();
    adopt->add_option("list", second, "The list in the source text")->default_val("eval/weightlist.inc");
    CLI11_PARSE(app, argc, argv);

    try {
        if (*fit) FitWeights(request);
        if (*error) ShowError(request);
        if (*sample) SamplePositions(sampleRequest);
        if (*list) ListWeights(first);
        if (*compare) CompareWeights(first, second);
        if (*mix) MixWeights(first, targets, second);
        if (*adopt) AdoptWeights(first, second);
    } catch (const std::bad_alloc&) {
        throw std::runtime_error("not enough memory for so many positions (--positions)");
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return RunTool("kestrovan-tune", Run, argc, argv);
}
