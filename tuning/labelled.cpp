#include "tuning/labelled.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include "core/fen.h"
#include "core/positionfault.h"

namespace {

// What stands behind the fields of the position, or null when they are not all there.
const char* BehindPosition(const char* line) {
    constexpr int FIELDS = 4;
    constexpr char BLANKS[] = " \t";
    for (int field = 0; field < FIELDS; ++field) {
        line += std::strspn(line, BLANKS);
        if (*line == '\0') return nullptr;
        line += std::strcspn(line, BLANKS);
    }
    return line;
}

}  // namespace

double ResultOf(const char* line) {
    constexpr struct {
        const char* Text;
        double Points;
    } FORMS[] = {{"1/2-1/2", 0.5}, {"1-0", 1}, {"0-1", 0}, {"[1.0]", 1}, {"[0.5]", 0.5}, {"[0.0]", 0}};
    const char* const rest = BehindPosition(line);
    if (rest == nullptr) return -1;
    // What stands within a longer word is part of a date, a score or a name.
    const auto isOfWord = [](char letter) {
        return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '-' || letter == '/';
    };
    for (const char* at = rest; *at != '\0'; ++at) {
        if (isOfWord(at[-1])) continue;
        for (const auto& [text, points] : FORMS) {
            const size_t length = std::strlen(text);
            if (std::strncmp(at, text, length) == 0 && !isOfWord(at[length])) return points;
        }
    }
    return -1;
}

bool ReadScore(const char* line, int* score) {
    constexpr int HIGHEST = 2000;  // more is as won, and a mate's number would bend what the others mean
    const char* const rest = BehindPosition(line);
    const char* const found = rest == nullptr ? nullptr : std::strstr(rest, " ce ");
    if (found == nullptr) return false;
    char* end = nullptr;
    const long value = std::strtol(found + 4, &end, 10);
    *score = static_cast<int>(std::clamp<long>(value, -HIGHEST, HIGHEST));
    return end != found + 4;
}

bool SetUpPosition(const char* line) {
    LoadCommonFEN(line);
    return FindPositionFault() == nullptr;
}
