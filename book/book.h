#pragma once

#include <string>

// The opening book. The settings are written by the settings file and by UCI options.

extern int OwnBook;              // setting: use the book
extern int UseBookWeights;       // setting: choose among good moves by their record
extern int UseBookLearning;      // setting: write results back into the book
extern int BookLearningMode;     // setting: 0 kill, 1 discover
extern int BookLearningBound;    // setting: centipawns
extern int VarietyOfPlay;        // setting: 0 best move only, 100 any move
extern int Learning;             // setting: remember positions that were misjudged
extern int UseLearningData;      // setting: use what was remembered
extern int LogLearningIntoFile;  // setting: keep a log of it

extern int BookLoaded;        // whether a book is open
extern int BookLearningDone;  // whether this game's result has been written back; 1 before the first new game

// Opens a book file in place of the one that is open; says why it can't.
void OpenBook(const std::string& path);

// Prints the book moves of the position, with the two words of its key: the reply to "bkm".
void ListBookMoves();

// The book's part of a new game.
void ResetBookGame();
