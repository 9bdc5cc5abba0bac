#pragma once

// Drawish endings that are told by the number of pawns. Each takes a score that isn't 0, Black-positive
// centipawns, and returns what is left of it; `eval_info.margin` follows.

// One pawn in all.
int ScaleOnePawn(int score);

// Three pawns in all.
int ScaleThreePawns(int score);

// Rook and pawn against rook; other endings keep their score.
int ScaleRookAndPawn(int score);
