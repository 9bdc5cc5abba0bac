#pragma once

// Commands for those who work on the evaluation.

// Prints the static evaluation of each position of a file, from the side to move's view, and copies every
// tenth line to "out.epd". Positions as LoadFEN reads them; a last line without a line end is not processed.
void EvaluateEpdFile(const char* path);

// Evaluation statistics over the games of a fixed file: the command "pgneval".
void EvaluatePgnFile();
