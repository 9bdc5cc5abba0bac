#pragma once

// Commands for those who work on the evaluation. They go through files of positions and games; the game on
// the board stands afterwards. A file that can't be opened is named, before anything is written.

// Prints the static evaluation of each position of a file, from the side to move's view, and copies every
// tenth line to "out.epd". Positions as LoadFEN reads them; of a line longer than 254 characters the rest
// counts as a further line, and a last line without a line end is not processed.
void EvaluateEpdFile(const char* path);

// What "pgneval" reads and writes unless it is told otherwise. Where there are no drive letters these are
// plain names in the working directory.
constexpr char PGN_FILE[] = "c:\\work\\source.pgn";
constexpr char STATISTICS_FILE[] = "c:\\work\\my_eval.csv";

// Goes through the games of a file and adds a line with statistics (evalrecord.h) to the end of another for
// the position behind each move. The first game that can't be read or played to its end is the last one; what
// is wrong with it is printed.
void EvaluatePgnFile(const char* path, const char* outputPath);
