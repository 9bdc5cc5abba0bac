#pragma once

// What the pieces bring against the enemy king.

// Sets `eval_info.danger` for both sides and adds the worth of each attack to the attacker's bucket, optimism
// and tempo. Needs the attack sets and the shelter indexes. A king that needs no shelter is in no danger.
void EvaluateKingAttacks();

// Adds the pieces' closeness to the enemy king, scaled by Tropism, to the opening sum.
void EvaluateTropism();

// The worth in centipawns of the attack on the side's king, from its shelter index and the danger index of
// the enemy in `eval_info`.
int KingAttackOn(int side);

// What the squares around the side's king from which an enemy queen could look at it are worth to the enemy,
// 0..75 centipawns. 0 without an enemy queen. Needs the attack sets.
int KingExposureOf(int side);
