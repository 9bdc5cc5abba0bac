#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/bookimage.h"

// What is wrong with a book.

struct BookFaults {
    static constexpr size_t MOST_PLACES = 20;

    const char* Kind;
    int64_t Count = 0;
    std::vector<std::string> Places;  // of the first of them
};

struct BookReport {
    std::vector<BookFaults> Faults;  // every kind that has been found
    int64_t Moves = 0;
    int64_t Reached = 0;      // positions, from the initial one
    int64_t UnusedBytes = 0;  // behind the index, in no list
};

// Looks at the whole book: header, order of the index, lists, squares, counts, and the legality of moves
// wherever the initial position leads to. Uses `board`.
BookReport CheckBook(const BookImage& book);
