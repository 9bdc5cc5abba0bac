#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/bookformat.h"
#include "book/bookkeys.h"
#include "core/types.h"

// A whole book in memory, to be looked at rather than played from. What the file holds is not trusted.

struct BookMove {
    int From = 0, To = 0;        // 0..255
    unsigned Good = 0, Bad = 0;  // results; of a book of version 0 the weight and 0
    bool IsRemoved = false;
};

class BookImage {
  public:
    static constexpr int64_t NOWHERE = -1;

    // Reads the file; throws a BookError when it can't be read.
    explicit BookImage(const std::string& path);

    // Why the file is no book, in a few words, or null. Without a header only Length may be asked.
    const char* HeaderFault() const;
    bool HasReservedBits() const;
    int64_t Length() const { return static_cast<int64_t>(bytes_.size()); }
    int Version() const { return Word(BOOK_VERSION_PLACE); }

    // The number of positions that the header names, and of those whose index record the file holds.
    int64_t NamedNodes() const { return Word(BOOK_COUNT_PLACE); }
    int64_t Nodes() const;

    // Of a node, 0 to Nodes() - 1.
    BookKey Key(int64_t node) const;
    int64_t ListPlace(int64_t node) const;
    int64_t ListsBegin() const;  // behind the index

    // The number of a list's moves and its length in bytes; of a node whose list begins inside the file.
    int ListCount(int64_t node) const { return bytes_[static_cast<size_t>(ListPlace(node))]; }
    int64_t ListBytes(int64_t node) const;

    // Whether the list of the node lies within the part of the file that is for lists.
    bool HasList(int64_t node) const;

    // The moves of the node; none unless it has a list.
    std::vector<BookMove> Moves(int64_t node) const;

    // The node of a position, or NOWHERE.
    int64_t Find(const BookKey& key) const;

  private:
    int32_t Word(size_t place) const;

    std::vector<uint8_t> bytes_;
};

// LegalBookMove (bookmove.h) with every right to castle and to capture en passant that the men allow: a
// book's key doesn't tell them, and games may have come to the position with more of them than stand on the
// board.
Move LikelyBookMove(const BookMove& move);

// The squares, as coordinates or, if there are none of the name, as numbers.
std::string SquaresText(const BookMove& move);

// What a book says about a move, in words.
std::string DescribeResults(const BookMove& move, int version);
