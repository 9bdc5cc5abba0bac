#pragma once

#include <string>
#include <vector>

#include "tuning/gamesample.h"
#include "tuning/samples.h"

// The commands of kestrovan-tune that read labelled positions. What can't be read or written throws a
// std::runtime_error.

struct TuneRequest {
    std::vector<std::string> Positions;   // files of labelled positions
    std::string Start;                    // values.txt to start from; empty: the built-in weights
    std::string Output = "values.txt";    // "fit" only, as all that follow but Chosen and Workers
    std::string State, Curve;             // files for going on and for the picture; empty: none
    std::vector<std::string> Keep, Only;  // names of the weight list
    Choice Chosen;                        // of the positions
    int Rounds = 10;
    double Hold = 100;  // samples
    int Workers = 1;
};

struct SampleRequest {
    std::vector<std::string> Games;
    std::string Output;
    SamplingOptions Options;
};

// "sample": takes positions out of games, in the form that "fit" reads.
void SamplePositions(const SampleRequest& request);

// "fit": finds weights that foretell the results of the positions best, and writes and explains them.
void FitWeights(const TuneRequest& request);

// "error": how well weights foretell the results.
void ShowError(const TuneRequest& request);
