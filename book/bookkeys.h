#pragma once

#include <array>
#include <cstdint>

// The keys by which books know positions. Castling rights and en passant are not in them.

// The words that the keys are made of, by 64 x piece slot + square. A white man's slot is its piece code + 8,
// a black man's the code. The same in every program that is to read the same books.
extern const std::array<uint32_t, 1024> BookKeyTable1;
extern const std::array<uint32_t, 1024> BookKeyTable2;

struct BookKey {
    uint32_t Key1 = 0, Key2 = 0;  // books sort them as signed numbers
    bool operator==(const BookKey&) const = default;
};

// Whether a book has position a before position b.
inline bool IsBefore(const BookKey& a, const BookKey& b) {
    const auto first = static_cast<int32_t>(a.Key1), second = static_cast<int32_t>(b.Key1);
    return first != second ? first < second : static_cast<int32_t>(a.Key2) < static_cast<int32_t>(b.Key2);
}

// The key of the position on the board.
BookKey CurrentBookKey();
