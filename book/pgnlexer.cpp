#include "book/pgnlexer.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr int END = PgnSource::END;

constexpr const char* RESULTS[] = {"1-0", "0-1", "1/2-1/2", "1/2"};

// Signs beyond ASCII that stand for characters of moves and results. All others are assessments.
struct Sign {
    const char *Bytes, *Meaning;
};
constexpr Sign SIGNS[] = {
    {"\xE2\x99\x94", "K"}, {"\xE2\x99\x95", "Q"},   {"\xE2\x99\x96", "R"},  // white figurines
    {"\xE2\x99\x97", "B"}, {"\xE2\x99\x98", "N"},   {"\xE2\x99\x99", "P"},
    {"\xE2\x99\x9A", "K"}, {"\xE2\x99\x9B", "Q"},   {"\xE2\x99\x9C", "R"},  // black figurines
    {"\xE2\x99\x9D", "B"}, {"\xE2\x99\x9E", "N"},   {"\xE2\x99\x9F", "P"},
    {"\xE2\x80\x90", "-"}, {"\xE2\x80\x91", "-"},   {"\xE2\x80\x93", "-"},  // hyphens and a dash
    {"\xE2\x88\x92", "-"}, {"\xE2\x80\xA6", "..."}, {"\xC3\x97", "x"},      // minus, ellipsis, times
    {"\xC2\xBD", "1/2"},
};
constexpr char NO_BREAK_SPACE[] = "\xC2\xA0";

// The sign that comes next, null for none of them.
const Sign* FindSign(PgnSource& source) {
    const Sign* sign = std::find_if(std::begin(SIGNS), std::end(SIGNS),
                                    [&](const Sign& row) { return source.StartsWith(row.Bytes); });
    return sign == std::end(SIGNS) ? nullptr : sign;
}

// What people write beside moves: en passant, a novelty, a diagram.
constexpr const char* ASIDES[] = {"e.p.", "ep", "N", "D"};

bool IsDigit(int byte) {
    return byte >= '0' && byte <= '9';
}
bool IsLetter(int byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}
bool IsBlank(int byte) {
    return byte == ' ' || byte == '\t';
}
bool IsLineEnd(int byte) {
    return byte == '\n' || byte == '\r' || byte == END;
}
bool IsHigh(int byte) {
    return byte >= 128;
}

// Whether the byte belongs to no word, wherever it stands. NUL counts as a blank.
bool EndsWord(int byte) {
    return byte <= ' ' || byte == 127 || std::strchr("{}()[];$<>*", byte) != nullptr;
}

bool IsAny(const std::string& word, const char* const* first, const char* const* last) {
    return std::find(first, last, word) != last;
}

// Whether a word is no more than signs: assessments, dots. Two hyphens are a move that was passed.
bool IsBare(const std::string& word) {
    const auto isSign = [](char letter) {
        const int byte = static_cast<unsigned char>(letter);
        return !IsDigit(byte) && !IsLetter(byte) && byte != '@';
    };
    return word != "--" && std::all_of(word.begin(), word.end(), isSign);
}

// Takes the number off a move: digits, unless they belong to castling, and dots.
void CutMoveNumber(std::string& word) {
    const size_t digits = word.find_first_not_of("0123456789");
    if (digits != std::string::npos && digits > 0 && word[digits] == '-') return;
    word.erase(0, std::min(word.size(), digits));
    word.erase(0, std::min(word.size(), word.find_first_not_of('.')));
}

}  // namespace

PgnToken PgnLexer::Take() {
    followsComment_ = false;
    while (true) {
        line_ = source_.Line();
        switch (source_.Peek()) {
            case END:
                return PgnToken::END;
            case '{':
                followsComment_ = true;
                if (!SkipComment()) return Unclosed("comment");
                continue;
            case '(':
                if (!SkipVariation()) return Unclosed("variation");
                continue;
            case '[':
                if (isTagPlace_ && IsTagAhead()) {
                    TakeTag();
                    return PgnToken::TAG;
                }
                break;
            case '*':
                word_ = static_cast<char>(source_.Take());
                isTagPlace_ = true;
                return PgnToken::RESULT;
        }
        if (SkipFiller()) continue;
        isTagPlace_ = false;
        if (!TakeWord()) continue;
        isTagPlace_ = IsAny(word_, std::begin(RESULTS), std::end(RESULTS));
        return isTagPlace_ ? PgnToken::RESULT : PgnToken::WORD;
    }
}

// Takes what stands between words and says nothing of the game; false before a word.
bool PgnLexer::SkipFiller() {
    const int byte = source_.Peek();
    if (byte == ';' || (byte == '%' && source_.IsAtLineStart())) {
        source_.SkipLine();
    } else if (byte == '[' || byte == '<') {
        SkipBrackets(byte == '[' ? ']' : '>');
    } else if (byte == '$') {
        do source_.Take();
        while (IsDigit(source_.Peek()));
    } else if (EndsWord(byte)) {
        if (source_.Take() == '\n') isTagPlace_ = true;
    } else if (source_.StartsWith(NO_BREAK_SPACE)) {
        for (int i = 0; i < 2; ++i) source_.Take();
    } else {
        return false;
    }
    return true;
}

PgnToken PgnLexer::Unclosed(const char* what) {
    word_ = what;
    isTagPlace_ = true;
    return PgnToken::UNCLOSED;
}

bool PgnLexer::IsTagAhead() {
    size_t place = 1;
    while (place + 1 < PgnSource::LONGEST_PEEK && IsBlank(source_.Peek(place))) ++place;
    return IsLetter(source_.Peek(place));
}

void PgnLexer::TakeTag() {
    tagName_.clear();
    tagValue_.clear();
    source_.Take();
    while (IsBlank(source_.Peek())) source_.Take();
    for (int byte = source_.Peek(); !IsLineEnd(byte) && !IsBlank(byte) && byte != '"' && byte != ']';
         byte = source_.Peek()) {
        if (tagName_.size() < NAME_LIMIT) tagName_ += static_cast<char>(byte);
        source_.Take();
    }
    while (IsBlank(source_.Peek())) source_.Take();
    TakeTagValue();
    SkipBrackets(']');
}

// A quote ends the value only before the tag's end: people forget to escape those inside. A value without
// quotes ends with the tag, and every value with its line.
void PgnLexer::TakeTagValue() {
    const bool isQuoted = source_.Peek() == '"';
    if (isQuoted) source_.Take();
    for (int byte = source_.Peek(); !IsLineEnd(byte); byte = source_.Peek()) {
        if (!isQuoted && byte == ']') return;
        if (isQuoted && byte == '"') {
            size_t next = 1;
            while (next + 1 < PgnSource::LONGEST_PEEK && IsBlank(source_.Peek(next))) ++next;
            if (source_.Peek(next) == ']' || IsLineEnd(source_.Peek(next))) return;
        }
        const int escaped = source_.Peek(1);
        if (byte == '\\' && (escaped == '"' || escaped == '\\')) {
            source_.Take();
            byte = escaped;
        }
        if (tagValue_.size() < VALUE_LIMIT) tagValue_ += static_cast<char>(byte);
        source_.Take();
    }
}

void PgnLexer::AddToWord(int byte) {
    if (word_.size() < WORD_LIMIT) word_ += static_cast<char>(byte);
}

// Whether a promotion's piece stands in brackets behind the word.
bool PgnLexer::IsPromotionAhead() {
    return source_.Peek() == '(' && source_.Peek(2) == ')' && !word_.empty() &&
           std::strchr("18", word_.back()) != nullptr && std::strchr("QRBN", source_.Peek(1)) != nullptr;
}

// Completes a word that is the first half of a result with blanks around its hyphen.
bool PgnLexer::TakeRestOfResult() {
    if (word_ != "1" && word_ != "0" && word_ != "1/2") return false;
    size_t place = 0;
    const auto skipBlanks = [&] {
        while (place < PgnSource::LONGEST_PEEK / 2 && IsBlank(source_.Peek(place))) ++place;
    };
    skipBlanks();
    if (source_.Peek(place) != '-') return false;
    ++place;
    skipBlanks();
    for (const std::string result : {"1-0", "0-1", "1/2-1/2"}) {
        const size_t hyphen = result.find('-');
        const std::string rest = result.substr(hyphen + 1);
        size_t length = 0;
        while (length < rest.size() && source_.Peek(place + length) == rest[length]) ++length;
        if (word_ != result.substr(0, hyphen) || length < rest.size() ||
            !EndsWord(source_.Peek(place + length)))
            continue;
        for (place += length; place > 0; --place) source_.Take();
        word_ = result;
        return true;
    }
    return false;
}

// Takes a word and all that is glued to it; false if it says nothing of the game.
bool PgnLexer::TakeWord() {
    word_.clear();
    // A word that begins with a sign that means nothing here may be a move of another alphabet.
    const bool isForeign = IsHigh(source_.Peek()) && FindSign(source_) == nullptr;
    while (true) {
        const int byte = source_.Peek();
        if (const Sign* sign = IsHigh(byte) ? FindSign(source_) : nullptr) {
            for (size_t i = std::strlen(sign->Bytes); i > 0; --i) source_.Take();
            for (const char* letter = sign->Meaning; *letter != '\0'; ++letter) AddToWord(*letter);
        } else if (IsPromotionAhead()) {
            for (int i = 0; i < 3; ++i) AddToWord(source_.Take());
        } else if (EndsWord(byte) || source_.StartsWith(NO_BREAK_SPACE) || (IsHigh(byte) && !isForeign)) {
            break;
        } else {
            AddToWord(source_.Take());
        }
    }
    if (TakeRestOfResult() || IsAny(word_, std::begin(RESULTS), std::end(RESULTS))) return true;
    CutMoveNumber(word_);
    return !IsBare(word_) && !IsAny(word_, std::begin(ASIDES), std::end(ASIDES));
}

// False, with all the rest left, when the next game or the end of the file comes first.
bool PgnLexer::SkipComment() {
    for (int byte = source_.Take(); byte != '}'; byte = source_.Take()) {
        if (byte == END || (byte == '\n' && source_.StartsWith("[Event "))) return false;
    }
    return true;
}

bool PgnLexer::SkipVariation() {
    int64_t depth = 0;
    bool isTagPlace = false;
    do {
        const int byte = source_.Peek();
        if (byte == END || (byte == '[' && isTagPlace && IsTagAhead())) return false;
        if (byte == '{') {
            if (!SkipComment()) return false;
            isTagPlace = false;
            continue;
        }
        if (byte == ';' || (byte == '%' && source_.IsAtLineStart())) {
            source_.SkipLine();
            continue;
        }
        depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
        source_.Take();
        isTagPlace = IsLineEnd(byte) || (isTagPlace && IsBlank(byte));
    } while (depth > 0);
    return true;
}

// Takes all up to the closing bracket or the end of the line.
void PgnLexer::SkipBrackets(char closing) {
    while (!IsLineEnd(source_.Peek())) {
        if (source_.Take() == closing) return;
    }
}
