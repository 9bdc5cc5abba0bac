#pragma once

#include <array>
#include <string>

#include "eval/score.h"

// The evaluation's weights: the rows of weightlist.inc, each a global of the name that the row gives it.
// Written at start-up and by LoadWeights only.

// The parameters from which a piece's square table is made, for one phase, in quarters of a centipawn. The
// centre steps count -3, -1, 1, 3 from the edge to the middle.
struct PsqWeights {
    int FileCentre;  // per centre step of the file
    int RankCentre;  // per centre step of the rank
    int Advance;     // per rank from the own back rank
    int HomeRank;    // on the own back rank; of a pawn, on the second
};

template <int length>
using Ints = std::array<int, length>;
template <int length>
using Scores = std::array<Score, length>;

#define WEIGHT(type, name, meaning, ...) extern type name;
#include "eval/weightlist.inc"
#undef WEIGHT

// The king-safety settings of the personality: raw value in percent (0..300 in the settings file) and the
// scaled value that the evaluation uses.
struct Personality {
    int Raw;
    int Scaled;
};
extern Personality Aggressivity;  // scaled = raw x 50 / 100
extern Personality Cowardice;     // scaled = raw x 50 / 100
extern Personality Tropism;       // scaled = raw x 200 / 100

// Counts the changes of weights and personality: what was evaluated under another number no longer holds.
extern unsigned EvaluationVersion;

void SetAggressivity(int raw);
void SetCowardice(int raw);
void SetTropism(int raw);

// Sets every weight to its default and builds the tables that follow from the weights.
void InitWeights();

// All weights as one row of numbers, in the order of the list.
constexpr int WEIGHT_COUNT = 327;  // the form of values.txt
using WeightValues = std::array<int, WEIGHT_COUNT>;

WeightValues DefaultWeights();
WeightValues CurrentWeights();

// Beyond any use; the sums of thirty-two men have room for it.
constexpr int LARGEST_WEIGHT = 9999;

// Sets every weight and builds the tables that follow. Larger numbers are cut to the largest.
void SetWeights(const WeightValues& values);

// The name of a weight by its place in the row: as in the list, with what tells it from others of its name.
std::string WeightName(int place);

// What the list says about the weight, and whether a name is its own, or one of several: "PassedRank[2]" is
// two weights, and "PassedRank" all of that row.
const char* WeightMeaning(int place);
bool IsWeightOf(int place, const std::string& name);

// Reads weights from a file, without putting them into force; false, and nothing changed, as for LoadWeights.
bool ReadWeights(const char* path, WeightValues* values);

// Reads the weights from a file, one integer a line, in the order of the list, and rebuilds the tables. A
// file that can't be opened, is too short or too long or holds anything but integers changes nothing: false.
bool LoadWeights(const char* path);

// Writes weights, those in force or others, in the same form; false when the file can't be written.
bool WriteWeights(const char* path);
bool WriteWeights(const char* path, const WeightValues& values);

// The file that start-up, "reload" and "writevalues" use.
constexpr char WEIGHTS_FILE[] = "values.txt";

// LoadWeights from WEIGHTS_FILE; when that changes nothing, says "Error loading values.txt".
void ReloadWeights();
