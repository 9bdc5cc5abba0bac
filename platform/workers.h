#pragma once

#include <cstddef>
#include <functional>

// Work in several processes at once: the board and the weights are global, so each needs its own. What the
// processes find they leave in shared memory.

// Memory of zeros that this process and its workers see alike; null without it. To be given back to
// FreeSharedMemory with the same length.
void* AllocateSharedMemory(size_t bytes);
void FreeSharedMemory(void* memory, size_t bytes);

// Calls work(0) to work(count - 1), each in a copy of this process, and waits for all of them, meanwhile
// calling `whileWaiting` again and again. Changes that a worker makes outside shared memory are lost.
// False when one of them came to grief. Where the system can't copy a process the calls are made one after
// the other in this one.
bool RunWorkers(int count, const std::function<void(int)>& work, const std::function<void()>& whileWaiting);
