#include "tools/interruption.h"

#include <csignal>

std::atomic<bool> IsInterrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

static void NoteInterruption(int signal) {
    IsInterrupted = true;
    std::signal(signal, SIG_DFL);
}

void WatchInterruptions() {
    for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, NoteInterruption);
}
