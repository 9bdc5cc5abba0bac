#pragma once

// The pawn skeleton. What the pawns alone decide is computed once and kept in the pawn hash table.

// Adds the scores of the pawn structure, in centipawns, Black-positive, to the two sums, and leaves
// `pawn_cache` and `eval_info.passed_pawns` current.
void EvaluatePawnStructure(int* opening, int* ending);

// Fills the four shelter defect bytes of `pawn_cache` from the pawns on the board.
void ComputeShelterDefects();
