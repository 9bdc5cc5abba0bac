#pragma once

#include <cstdio>

#include "core/types.h"

// Moves as text, both ways.

// Room for the text of a move, its NUL included.
constexpr int MOVE_TEXT_SIZE = 8;

// Coordinate text such as e2e4, e7e8q or (castling) e1g1; 0000 for no move. The text stands in one buffer
// that the next call of either procedure overwrites.
const char* MoveToText(Move move);

// The moving piece's letter and the squares, such as Ng1f3; - for no move. The buffer is the same.
const char* MoveToPieceText(Move move);

// Whether the text begins like a coordinate move: two squares, whatever follows.
bool LooksLikeMove(const char* text);

// The move of a line that is one, with or without "usermove" before it; null for any other line.
const char* FindMoveText(const char* line);

// The move word of four coordinate characters and a promotion letter (q, r, b or n; none for any other
// character), with the men that stand on its squares. The characters must pass LooksLikeMove; legality is not
// looked at. An en-passant capture gets an empty captured field, as everywhere.
Move TextToMove(char fromFile, char fromRank, char toFile, char toRank, char promotionLetter);

// The same for text that begins with a coordinate move. Capital letters are understood.
Move TextToMove(const char* text);

// The last token that ReadMoveToken has read.
constexpr int MOVE_TOKEN_LENGTH = 15;
extern char MoveToken[MOVE_TOKEN_LENGTH + 1];

// Reads one move token of a game file into MoveToken: characters that moves are written with, up to the first
// other one, which is consumed. True at the end of the file, also in the middle of a token. A token of
// MOVE_TOKEN_LENGTH characters ends the program with exit code 2 and a message.
bool ReadMoveToken(std::FILE* stream);
