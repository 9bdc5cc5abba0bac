#pragma once

// How far passed pawns have come and what helps or stops them. Adds to the per-side buckets of `eval_info`;
// needs the pawn entry, the passed pawns and the attack sets.
void EvaluatePassedPawns();
