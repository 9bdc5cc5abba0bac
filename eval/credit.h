#pragma once

#include "eval/evaluate.h"
#include "eval/score.h"

// Adds a term to the tapered sum of `eval_info` in favour of the side.
template <int side>
inline void Credit(Score term) {
    constexpr int sign = side == BLACK ? 1 : -1;
    eval_info.opening += sign * term.Opening;
    eval_info.ending += sign * term.Ending;
}
