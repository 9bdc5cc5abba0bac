#include "tools/progress.h"

#include <algorithm>
#include <cstdio>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#include <unistd.h>
#define HAS_RESOURCES
#endif

#include "platform/platform.h"

#ifdef HAS_RESOURCES
static bool IsErrorStreamSeen() {
    return isatty(STDERR_FILENO) != 0;
}

int64_t PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return int64_t{usage.ru_maxrss} * 1024;
}
#else
static bool IsErrorStreamSeen() {
    return false;
}

int64_t PeakMemory() {
    return 0;
}
#endif

Progress::Progress() : isSeen_(IsErrorStreamSeen()), start_(ClockMs()), last_(start_) {}

bool Progress::IsDue() {
    constexpr int64_t SEEN_MS = 500, LOGGED_MS = 5000;
    const int64_t now = ClockMs();
    if (now - last_ < (isSeen_ ? SEEN_MS : LOGGED_MS)) return false;
    last_ = now;
    return true;
}

void Progress::Show(const std::string& text) {
    if (!isSeen_) {
        std::fprintf(stderr, "%s\n", text.c_str());
        return;
    }
    // What was longer is blotted out.
    const int width = static_cast<int>(std::max(shown_, text.size()));
    std::fprintf(stderr, "\r%-*s", width, text.c_str());
    shown_ = text.size();
}

void Progress::Clear() {
    if (shown_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_), "");
    shown_ = 0;
}

double Progress::Seconds() const {
    return static_cast<double>(ClockMs() - start_) / 1000;
}
