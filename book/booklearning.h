#pragma once

#include "core/types.h"

// Writing the results of games back into the book.

enum BookResult { LINE_WENT_BADLY = 0, LINE_WENT_WELL = 1, GAME_ENDED = 2 };

extern int BookLearningDone;  // whether this game's result has been written back; 1 before the first new game

// Whether the game's result may still be written: a book is open, UseBookLearning is on, and it hasn't been.
bool IsBookLearningDue();

// Writes the result into every book position of the game in which the side to move was to move, and lets that
// be all for this game; while another program keeps the book to itself nothing is done, and may be tried
// again. The position and the game stay.
void LearnBookGame(BookResult result);

// Writes the result into the entry of `move` in the position on the board, if the book has a live one.
void UpdateBookMove(BookResult result, Move move);

// The book's part of a new game.
void ResetBookGame();
