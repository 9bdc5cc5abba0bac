#pragma once

// Answering from the opening book instead of searching.

extern int IsBookMove;  // whether root move 0 of the last search came from the book

// Makes a book move the only root move, with score 0, if there is one and the search may take it: not one for
// several lines, for some moves only or without an end. `useBook` is the caller's leave.
bool AnswerFromBook(int useBook);

// Writes the end of the game on the board into the book, if that is due.
void LearnGameEnd();
