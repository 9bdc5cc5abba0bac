#pragma once

// Knowledge of endings with few men. Scores are centipawns and Black-positive, except where it says
// otherwise.

// Runs first when a side has less than EndingUnits of pieces. Sets `eval_info.cannot_win`. When it knows the
// ending, stores the result from the side to move's view and returns true.
bool EvaluateLowMaterial(int* result);

// What becomes of a score that isn't 0 when the material is drawish: scaled, together with
// `eval_info.margin`, or replaced. A side that can't win gets nothing out of it.
int ScaleDrawishMaterial(int score);

// Takes the score back to 0 from a side that can't win.
int ClampNoWin(int score);
