#pragma once

#include <string>

#include "tuning/tuner.h"

// The state between two rounds as a file, so that the work can be stopped at any time and gone on with.

// Throws std::runtime_error when the file can't be written; the old one, if any, then stands.
void SaveState(const std::string& path, const TuningOptions& options, const TuningState& state);

// `state` comes from BeginTuning. False when there is no such file; throws std::runtime_error for one that
// can't be read, is damaged, or was made with other options (but for Rounds) or positions, or by a program
// that evaluates them in another way: going on with it would mix two errands.
bool LoadState(const std::string& path, const TuningOptions& options, TuningState& state);
