#pragma once

// The memory of all hash tables. A failed allocation says so and ends the program with status 1.

void AllocateHashTables();
void ReallocateTransposition();
void ReallocatePawnHash();
void FreeHashTables();

// Gives the transposition table a new size, at most what the options announce, and empties it.
void ResizeTransposition(int megabytes);

// Empties the transposition, pawn and evaluation tables.
void ClearHashTables();
