#pragma once

// Positions with the result of the game that they are from, as lines of text.

// What the game brought White, in points, by the line; negative when it says nothing. Behind the four fields
// of the position the result stands in one of these forms, the first found counting: 1-0, 0-1, 1/2-1/2, with
// or without quotes, or [1.0], [0.5], [0.0]; not within a longer word.
double ResultOf(const char* line);

// What a search has said of the position, in centipawns from the side to move's view: the number behind
// "ce", at most +-2000. False when the line has none.
bool ReadScore(const char* line, int* score);

// Sets the position of the line up on `board`; false, and the board undefined, when no game can have it.
bool SetUpPosition(const char* line);
