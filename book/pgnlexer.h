#pragma once

#include <string>

#include "book/pgnsource.h"

// The tokens of a game file. Comments, variations, assessments and move numbers are left out.

enum class PgnToken { TAG, WORD, RESULT, UNCLOSED, END };

class PgnLexer {
  public:
    explicit PgnLexer(std::FILE* stream) : source_(stream) {}

    // Reads the next token. UNCLOSED stands for a comment or a variation that the file's end or the next game
    // has cut off.
    PgnToken Take();

    // Of the token that Take has returned. A word is a move, or nothing that is known: not empty, without
    // blanks and control characters, cut off behind WORD_LIMIT bytes. A tag's parts may be empty.
    const std::string& Word() const { return word_; }  // of WORD and RESULT; of UNCLOSED what it was
    const std::string& TagName() const { return tagName_; }
    const std::string& TagValue() const { return tagValue_; }
    int64_t Line() const { return line_; }                   // where it began, from 1
    bool FollowsComment() const { return followsComment_; }  // one in braces, behind the token before

    bool HasReadError() const { return source_.HasFailed(); }

    // Bytes that are kept.
    static constexpr size_t WORD_LIMIT = 32;
    static constexpr size_t NAME_LIMIT = 32;
    static constexpr size_t VALUE_LIMIT = 255;

  private:
    bool SkipFiller();
    bool IsTagAhead();
    void TakeTag();
    void TakeTagValue();
    bool TakeWord();
    void AddToWord(int byte);
    bool IsPromotionAhead();
    bool TakeRestOfResult();
    bool SkipComment();
    bool SkipVariation();
    void SkipBrackets(char closing);
    PgnToken Unclosed(const char* what);

    PgnSource source_;
    std::string word_, tagName_, tagValue_;
    int64_t line_ = 1;
    bool followsComment_ = false;
    bool isTagPlace_ = true;  // only blanks, comments or tags since the line or the game began
};
