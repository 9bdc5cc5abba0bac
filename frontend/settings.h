#pragma once

// The settings file, "Kestrovan.ini" in the working directory. The settings themselves belong to the rooms
// that use them.

// Sets every setting to its default.
void SetDefaultSettings();

// Reads the settings file, if there is one, and warns about values it can't take. Call it once, before the
// hash tables are allocated.
void ReadSettingsFile();

// Prints the settings in force.
void PrintSettings();

constexpr int MEGABYTE = 1048576;
constexpr int LARGEST_TABLE = 1024;  // megabytes

// Table sizes in entries for a size in megabytes, 0..LARGEST_TABLE.
int TranspositionEntries(int megabytes);
int PawnEntries(int megabytes);
