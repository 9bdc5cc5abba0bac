#pragma once

// How well its pawns cover the side's king: centipawns, 0 or below. Sets `eval_info.shelter_penalty[side]`.
// Reads the defects in `pawn_cache`, so the pawn structure must have been evaluated.
int EvaluateShelter(int side);

// The worth of a shelter index in centipawns; an index beyond the table counts as the last one.
int ShelterValueOf(int index);
