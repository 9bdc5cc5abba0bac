#include "platform/output.h"

#include <cstdarg>
#include <cstdio>

void Print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
}

void FlushOutput() {
    std::fflush(stdout);
}
