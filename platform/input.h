#pragma once

#include <string>

// The line buffer of standard input. Input is read raw and cut into lines here and nowhere else, so a test
// for waiting input never misses a line that was read ahead. Written only by the procedures below; lives for
// the whole run.

// The longest line that is kept, in bytes; the rest of a longer one is read and dropped. It holds the moves
// of a game of ten thousand plies.
constexpr size_t LINE_LIMIT = 65536;

// Waits for the next line and stores it without its line end (LF, with or without CR). Lines that were kept
// come first, in the order in which they were kept. False at the end of input, when no line is left.
bool ReadLine(std::string& line);

// Whether there is anything to take: a complete line, bytes that have not been read, or the end. Never waits.
bool InputAvailable();

// Takes the next line from the input proper, never waiting and ignoring kept lines; false when none is
// complete.
bool TakeWaitingLine(std::string& line);

// Puts a line behind the kept ones: ReadLine returns them before anything else.
void KeepLine(const std::string& line);

// Puts a line back in front of everything, to be returned by the next ReadLine.
void UnreadLine(const std::string& line);

// Whether a line has been kept for later; and whether one of a kind has.
bool HasKeptLine();
bool HasKeptLine(bool (*isOfKind)(const std::string& line));

// Whether standard input has ended and every line of it has been taken; never waits.
bool HasInputEnded();

// Takes the input as ended: whatever of it has not been taken is ignored, and nothing more is read.
void EndInput();

// Forgets everything read and kept, and the end of input.
void ResetInput();
