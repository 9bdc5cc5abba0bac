#pragma once

#include <cstdint>

// A term of the evaluation, in centipawns: its worth in the opening and in the ending, between which the
// driver tapers by the phase.
struct Score {
    int Opening;
    int Ending;

    constexpr Score& operator+=(Score term) {
        Opening += term.Opening;
        Ending += term.Ending;
        return *this;
    }
    constexpr Score& operator-=(Score term) {
        Opening -= term.Opening;
        Ending -= term.Ending;
        return *this;
    }
};

// A share, in 256ths, of a value.
constexpr int ShareOf(int value, int share) {
    return static_cast<int>(int64_t{value} * share / 256);
}
constexpr Score ShareOf(Score term, int share) {
    return {ShareOf(term.Opening, share), ShareOf(term.Ending, share)};
}

constexpr Score operator*(Score term, int count) {
    return {term.Opening * count, term.Ending * count};
}
