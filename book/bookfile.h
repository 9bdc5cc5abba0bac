#pragma once

#include <cstdint>
#include <string>

#include "platform/sharedfile.h"

// The book file that is open: finding a position's moves in it, and writing their results.

extern SharedFile
    BookFile;               // open or not, whether or not it is understood; written by OpenBook and CloseBook
extern int BookLoaded;      // whether there is a book to ask
extern int IsBookVersion0;  // whether its moves have plain weights instead of results

// Opens a book file in place of the one that is open and tells how many nodes it has, or what is wrong with
// it. A book of version 0 switches UseBookLearning and UseBookWeights off. What the file holds is not
// trusted: every read is checked, and what lies behind the end of the file reads as bytes of 255.
void OpenBook(const std::string& path);

// The book that is opened when nobody names one: "Book.kvb" in the working directory or, if there is none,
// beside the program; the former if there is neither.
std::string DefaultBookPath();

void CloseBook();

// One move of a position.
struct BookEntry {
    int From = 0, To = 0;    // not trusted either: 0..255
    unsigned Statistic = 0;  // version 1: good results + 256 x bad results; version 0: the weight

    unsigned Good() const { return Statistic & 0xFF; }
    unsigned Bad() const { return Statistic >> 8; }
    bool IsRemoved() const;
};

// The moves of a position, in the order of the file.
struct BookList {
    int64_t Place = 0;  // of the first entry, in bytes
    int Count = 0;
    BookEntry Entries[255];

    const BookEntry* begin() const { return Entries; }
    const BookEntry* end() const { return Entries + Count; }
};

// Looks for the position on the board. True, with the place of its move list, when the book has it.
bool FindBookPosition(int64_t* listPlace);

// Reads the move list of the position on the board; false when the book doesn't have it.
bool ReadBookList(BookList* list);

constexpr int WHOLE_LIST = -1;

// Writes the statistics of a list of version 1 back: those of entry `index`, or of the whole list at once.
// Nothing is written outside of the part of the file that holds move lists. The caller holds a FileLock of
// BookFile and has read the list under it.
void WriteBookList(const BookList& list, int index);
