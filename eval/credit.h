#pragma once

#include "eval/evaluate.h"
#include "eval/score.h"

// The sign of what favours the side in a Black-positive score.
constexpr int SignOf(int side) {
    return side == BLACK ? 1 : -1;
}

// Adds a term to the tapered sum of `eval_info` in favour of the side.
template <int side>
inline void Credit(Score term) {
    eval_info.opening += SignOf(side) * term.Opening;
    eval_info.ending += SignOf(side) * term.Ending;
}
