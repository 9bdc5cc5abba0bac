#pragma once

#include <atomic>

// The end of long work in good order. Written by the first interruption after WatchInterruptions, and by work
// that finds itself at its end; nobody resets it.
extern std::atomic<bool> IsInterrupted;

// From now on the first SIGINT or SIGTERM sets IsInterrupted; the next one ends the program as usual.
void WatchInterruptions();
