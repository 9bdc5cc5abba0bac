#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What the system gives; posix.cpp and windows.cpp implement it.

// Milliseconds of a wall clock that never runs backwards; its zero is unspecified.
int64_t ClockMs();

// Whether a raw read of standard input would return without waiting (data, an event or the end of input).
bool IsInputWaiting();

// Whether standard input is typed at a terminal.
bool IsInputTyped();

// Reads at most `size` bytes of standard input and waits for at least one; 0 at the end of input or on error.
size_t ReadRawInput(char* buffer, size_t size);

// Prepares standard input and output for unaltered bytes; called once at start-up.
void PrepareStandardStreams();

// Memory for a table that is read at random, on pages as large as the system gives; null without it. What it
// holds is undefined. To be given back to FreeTable.
void* AllocateTable(size_t bytes);
void FreeTable(void* table);

// The length of a file in bytes, or -1 when it can't be read.
int64_t FileLength(const std::string& path);

// The directory of the running program, with the separator at its end; empty when the system doesn't tell.
std::string ProgramDirectory();

// The names (without the directory) of the files in `directory` that end in `suffix`, unordered; the case of
// ASCII letters in the ending does not matter. Empty when the directory can't be read.
std::vector<std::string> FindFiles(const std::string& directory, const std::string& suffix);

// The path of a file in a directory, whether or not that ends with a separator.
std::string JoinPath(const std::string& directory, const std::string& name);

// Whether the drive that a directory names by its letter exists and holds a disk; true where there are no
// such letters, and for a directory without one. Nobody is asked to insert a disk, and a drive that was empty
// once is not looked at again.
bool IsDriveReady(const std::string& directory);
