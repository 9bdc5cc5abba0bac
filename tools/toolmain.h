#pragma once

// What the main procedures of the companion programs share.

// Makes keys, attack tables and the board ready, and does what `run` does with the command line. What that
// throws, memory that can't be had and output that can't be written are told on the error stream under the
// name of the program. Returns the exit status.
int RunTool(const char* name, int (*run)(int argc, char** argv), int argc, char** argv);
