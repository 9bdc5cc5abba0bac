#include "core/textnumber.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

int ReadNumber(const char* text) {
    return BoundToInt(std::strtoll(text, nullptr, 10));
}

int BoundToInt(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}
