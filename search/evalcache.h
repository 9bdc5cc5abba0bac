#pragma once

// The memory of the evaluation cache: 524290 entries of 52 bytes, addressed modulo 524288.

// Allocates and clears the cache, once; false without the memory.
bool AllocateEvalCache();

// Marks every entry empty.
void ClearEvalCache();

void FreeEvalCache();
