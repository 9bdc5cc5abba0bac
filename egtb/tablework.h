#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The unfinished work on a class, put by in a file. It is read by the kind of machine that has written it.

struct WorkState {
    int32_t Step = 0;      // moves to mate, of the next pass
    int32_t LastStep = 0;  // the longest mate that has been seen coming
    int32_t IsLosses = 1;  // whether the next pass is about losses
};

// The entries of one side to move, as TableBuilder has them.
struct WorkEntries {
    std::span<int16_t> Codes;
    std::span<uint8_t> MovesLeft;
};

// Throws TableError when the file can't be written.
void SaveWork(const std::string& path, const std::string& className, const WorkState& state,
              const std::vector<WorkEntries>& halves);

// Reads what has been saved for the class, with as many entries. False when there is no such file or it is
// not whole; what the entries hold then is undefined.
bool LoadWork(const std::string& path, const std::string& className, WorkState* state,
              const std::vector<WorkEntries>& halves);
