#pragma once

#include "core/types.h"

// What each man attacks, for the terms that follow.

// By the square of a king or piece of the position: what it attacks, pinned or not. Other entries, those of
// pawns among them, are left over from earlier positions; what pawns attack is whole in `eval_info.attacks`.
extern Bitboard AttacksBySquare[64];

// Fills AttacksBySquare and the attack sets of `eval_info`, pins included.
void BuildAttackSets();
