#pragma once

#include <span>

// The open thresholds of the search: the rows of parameterlist.inc, each an int of the name that the row
// gives it. Constants, but for a build for trials (KESTROVAN_TRIALS), in which UCI options of the same names
// set them.

#ifdef KESTROVAN_TRIALS
#define PARAMETER(name, value, least, greatest, meaning) extern int name;
#else
#define PARAMETER(name, value, least, greatest, meaning) constexpr int name = value;
#endif
#include "search/parameterlist.inc"
#undef PARAMETER

// A parameter that can be set, and the range that SetParameter keeps it in.
struct ParameterRow {
    const char* Name;
    int* Value;
    int Least, Greatest;
};

// All of them in a build for trials, none in any other.
std::span<const ParameterRow> SettableParameters();

// Sets the parameter of exactly that name, to the nearest value of its range; false when there is none.
bool SetParameter(const char* name, int value);
