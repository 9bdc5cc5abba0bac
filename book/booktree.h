#pragma once

#include <cstdint>
#include <vector>

#include "book/bookimage.h"

// The positions of a book that are reached from the initial one by its moves, removed ones included, and
// those that are legal only by another way to the position (LikelyBookMove).

// A position by its shortest way.
struct BookPlace {
    int64_t Node;
    int Parent;   // number of the place before it, -1 for none
    ::Move Move;  // from there
    int Ply;
};

class BookTree {
  public:
    // Farther from the beginning nothing is looked for: the way must fit into History.
    static constexpr int LONGEST_WAY = 400;  // plies

    // Finds the places at most so many plies away, the nearest first. Uses `board`.
    BookTree(const BookImage& book, int maxPlies);

    const std::vector<BookPlace>& Places() const { return places_; }

    // The number of the place of a node; -1 if it is not reached, or NOWHERE.
    int PlaceOf(int64_t node) const;

    // Puts a place on the board.
    void SetUp(int place) const;

  private:
    std::vector<BookPlace> places_;
    std::vector<int> placeOfNode_;
};

// The node behind a move of the position on the board, or NOWHERE.
int64_t NodeBehind(const BookImage& book, Move move);
