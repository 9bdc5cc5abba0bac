#pragma once

#include <cstdint>

// Numbers in text. Whatever a text says, the result is within the range of int.

// The number that a text begins with, as atoi reads it: 0 for anything else.
int ReadNumber(const char* text);

// The number nearest to the value.
int BoundToInt(int64_t value);
