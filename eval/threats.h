#pragma once

// What the men attack: threats against better men, loose men and pins, and the space behind the pawns. Adds
// to the tapered sum of `eval_info`; needs the attack sets.
void EvaluateThreats();
void EvaluateSpace();
