#pragma once

// Sets defaults, prints the banner, builds every table, reads the settings, allocates memory, opens what is
// there to open, prints the settings and sets up the initial position.
void StartUp();

// The command loop: interprets lines of standard input until it ends, and then the program.
[[noreturn]] void RunCommandLoop();

// Frees what was allocated and ends the program with status 0.
[[noreturn]] void ShutDown();

// Registers the tablebases under the path in force and says what was found; nothing with UseEGTB off.
void RegisterAndReportTablebases();

// Prints how many men the registered tables cover, and their memory.
void PrintTablebaseCount();
