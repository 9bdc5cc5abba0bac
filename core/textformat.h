#pragma once

#include <string>

// Text by the rules of printf, cut after 300 characters.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...);
