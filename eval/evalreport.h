#pragma once

// Evaluates the position from the side to move's view and prints the result with its terms: the report of the
// console command "evl". Sets EngineSide to the side to move.
void PrintEvaluation();
