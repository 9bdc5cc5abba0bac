#pragma once

#include "platform/input.h"

// The line being interpreted and its tokens. Written by Tokenize and SetInputLine; read by every command.

constexpr int TOKEN_LIMIT = 2048;
constexpr int TOKEN_LENGTH = 256;  // bytes of a token buffer, its NUL included; what is longer is cut

extern char InputLine[LINE_LIMIT + 1];
extern char Tokens[TOKEN_LIMIT][TOKEN_LENGTH];
extern int TokenOffset[TOKEN_LIMIT];  // where the token starts in the line
extern int TokenCount;                // tokens of the line, at least 1

// Makes a text the line to interpret; a NUL byte ends it.
void SetInputLine(const std::string& text);

// Whether the text matches the keyword: after leading blanks both agree, letters folded, until one of them
// ends. So every text that begins with the keyword matches, and every beginning of the keyword. Nothing
// matches an empty string.
bool MatchKeyword(const char* keyword, const char* text);

// Cuts a line into Tokens at the separators and returns TokenCount. A separator at the end of the line leaves
// an empty token behind it, deliberately. Tokens beyond TOKEN_LIMIT are ignored.
int Tokenize(const char* line, const char* separators);

// The number of token `index`; 0 when there is none.
int TokenNumber(int index);
