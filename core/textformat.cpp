#include "core/textformat.h"

#include <cstdarg>
#include <cstdio>

std::string Format(const char* format, ...) {
    char text[301];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    return text;
}
