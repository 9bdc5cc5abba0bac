#include "platform/sharedfile.h"

#include <chrono>
#include <thread>

#include "platform/platform.h"

bool SharedFile::Lock() {
    // An update takes far less than a millisecond; whoever holds a lock longer is not to cost a game its
    // time.
    constexpr int PATIENCE_MS = 20;
    const int64_t end = ClockMs() + PATIENCE_MS;
    while (!TryLock()) {
        if (ClockMs() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
