#pragma once

#include <string>

#include "book/pgnreader.h"

// One position of a game with the terms of its evaluation: the lines that "pgneval" writes.

// Evaluates the position on the board, which the half-move `ply` (from 1) of the game has led to, and returns
// its line with the line end: 18 integers, the position as text, 13 integers, separated by semicolons. What
// they are stands in docs/evaluation.md. Sets EngineSide to the side to move.
std::string GetEvaluationRecord(const PgnGame& game, int ply);
