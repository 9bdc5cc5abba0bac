#include "frontend/tokens.h"

#include <algorithm>
#include <cstring>

#include "core/textfold.h"
#include "core/textnumber.h"

char InputLine[LINE_LIMIT + 1];
char Tokens[TOKEN_LIMIT][TOKEN_LENGTH];
int TokenOffset[TOKEN_LIMIT];
int TokenCount = 0;

namespace {

const char* SkipBlanks(const char* text) {
    while (*text == ' ') ++text;
    return text;
}

}  // namespace

void SetInputLine(const std::string& text) {
    const size_t length = std::min<size_t>(text.size(), LINE_LIMIT);
    std::copy_n(text.data(), length, InputLine);
    InputLine[length] = '\0';
}

bool MatchKeyword(const char* keyword, const char* text) {
    keyword = SkipBlanks(keyword);
    text = SkipBlanks(text);
    if (*keyword == '\0' || *text == '\0') return false;
    while (*keyword != '\0' && *text != '\0') {
        if (FoldCase(*keyword++) != FoldCase(*text++)) return false;
    }
    return true;
}

int Tokenize(const char* line, const char* separators) {
    for (char* token : Tokens) *token = '\0';
    TokenCount = 0;
    int length = 0;
    bool isOpen = false;
    const char* here = line;
    for (; *here != '\0' && TokenCount < TOKEN_LIMIT - 1; ++here) {
        if (std::strchr(separators, *here) != nullptr) {
            if (isOpen) ++TokenCount;
            isOpen = false;
            length = 0;
            continue;
        }
        if (!isOpen) TokenOffset[TokenCount] = static_cast<int>(here - line);
        isOpen = true;
        if (length < TOKEN_LENGTH - 1) {
            Tokens[TokenCount][length++] = *here;
            Tokens[TokenCount][length] = '\0';
        }
    }
    if (!isOpen) TokenOffset[TokenCount] = static_cast<int>(here - line);
    return ++TokenCount;
}

int TokenNumber(int index) {
    return index < TokenCount ? ReadNumber(Tokens[index]) : 0;
}
