#pragma once

#include <string>

#include "tuning/tuner.h"

// The state between two rounds as a file, so that the work can be stopped at any time and gone on with.

// What a file was made for: going on with anything else would mix two errands.
struct TuningErrand {
    size_t Samples;
    const TuningOptions& Options;  // but for Rounds
};

// Throws std::runtime_error when the file can't be written; the old one, if any, then stands.
void SaveState(const std::string& path, const TuningErrand& errand, const TuningState& state);

// False when there is no such file; throws std::runtime_error for one that can't be read, is damaged, or was
// made for another errand.
bool LoadState(const std::string& path, const TuningErrand& errand, TuningState& state);
