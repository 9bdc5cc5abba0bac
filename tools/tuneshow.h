#pragma once

#include <string>
#include <vector>

#include "eval/weights.h"
#include "tuning/tuner.h"

// The commands of kestrovan-tune that show and adopt weights. What can't be read or written throws a
// std::runtime_error.

// The weights of a file, or the built-in ones when the path is empty.
WeightValues StartWeights(const std::string& path);

// "list": the name, the value and the meaning of every weight.
void ListWeights(const std::string& path);

// "compare": the weights in which two files differ.
void CompareWeights(const std::string& first, const std::string& second);

// "mix": goes a part of the way from some weights to others. A target is FILE:SHARE; what it differs by
// counts with its share.
void MixWeights(const std::string& start, const std::vector<std::string>& targets, const std::string& output);

// "adopt": puts the weights of a file into the source text of the list, as the built-in ones.
void AdoptWeights(const std::string& path, const std::string& listPath);

// Prints which weights have moved most and which the data say little about.
void ExplainFindings(std::vector<WeightFinding> findings, const WeightValues& start,
                     const WeightValues& tuned);
