#pragma once

#include <cstdint>

// The layout of a book file. All numbers are little-endian.
//
//   0  24  magic, no terminator
//  24   4  version, signed: 0 or 1
//  28   4  reserved, 0
//  32   4  number of nodes, signed
//  36      a record of 12 bytes for each node: two words of its key (bookkeys.h) and the place of its move
//  list;
//          ascending by the words, compared as signed numbers
//  then    the move lists: a byte that says how many entries follow, and so many entries:
//          version 0: from, to, weight; version 1: from, to, good results, bad results

constexpr char BOOK_MAGIC[] = "~Kestrovan openings book";
constexpr int BOOK_MAGIC_BYTES = 24;
constexpr int BOOK_VERSION_PLACE = 24;
constexpr int BOOK_COUNT_PLACE = 32;
constexpr int BOOK_RECORD_BYTES = 12;
constexpr int BOOK_HEADER_RECORDS = 3;  // the header is as long as so many records
constexpr int BOOK_HEADER_BYTES = BOOK_HEADER_RECORDS * BOOK_RECORD_BYTES;
constexpr int BOOK_LIST_LIMIT = 255;  // entries

constexpr int BookEntryBytes(bool isVersion0) {
    return isVersion0 ? 3 : 4;
}

// What the statistic of a removed move is.
constexpr unsigned REMOVED_WEIGHT = 255;     // version 0
constexpr unsigned REMOVED_RESULTS = 65535;  // version 1, both bytes as one number
