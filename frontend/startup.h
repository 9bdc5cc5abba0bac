#pragma once

// Sets defaults, prints the banner, builds every table, reads the settings, allocates memory, opens what is
// there to open, prints the settings and sets up the initial position. The tablebases that were found are
// left to report.
void StartUp();

// The command loop: reports the tablebases and makes their cache, interprets lines of standard input until it
// ends, and then ends the program.
[[noreturn]] void RunCommandLoop();

// Frees what was allocated and ends the program with status 0.
[[noreturn]] void ShutDown();

// Says what tablebases were found; nothing with UseEGTB off.
void ReportTablebases();

// Prints how many men the registered tables cover, and their memory.
void PrintTablebaseCount();
