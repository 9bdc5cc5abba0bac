#pragma once

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

constexpr Score operator*(Score term, int count) {
    return {term.Opening * count, term.Ending * count};
}
