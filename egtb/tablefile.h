#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "egtb/tableclass.h"
#include "egtb/tableindex.h"
#include "platform/sharedfile.h"

// Files are read in blocks of so many bytes.
constexpr int TABLE_BLOCK_BYTES = 8192;

// A class is split into part files when one side's file would be longer than this, the last whole block below
// 2 GB, beyond which many a file system and copier of files fail. All parts but the last one have this
// length.
constexpr int64_t TABLE_PART_BYTES = (int64_t{1} << 31) - TABLE_BLOCK_BYTES;
bool IsSplit(const TableClass& tableClass);

// The open file of a class with one side to move, in one piece or in parts, and the numbering of its entries.
class TableFile {
  public:
    // The attack tables must stand.
    TableFile(const TableClass& tableClass, int sideToMove);

    // Opens the parts, in their order, or the one file; false when one of them can't be opened.
    bool Open(const std::vector<std::string>& paths);

    // Bytes of the open parts, -1 when that can't be told; and whether each of them has the length it must
    // have.
    int64_t Length() const;
    bool HasRightLength() const;

    // Bytes that the file must have, and what it would have with the broken entries at its end.
    int64_t Bytes() const { return index_.FileEntries() * entryBytes_; }
    int64_t RangeBytes() const { return index_.Size() * entryBytes_; }

    // Reads bytes within one block; false when they can't be had.
    bool Read(int64_t place, void* bytes, size_t size) const;

    const TableIndex& Index() const { return index_; }
    int EntryBytes() const { return entryBytes_; }

    // Different for every file that has been opened since the start of the program.
    uint32_t Serial() const { return serial_; }

    // The path of the part that holds a byte.
    const std::string& PathAt(int64_t place) const { return paths_[place / TABLE_PART_BYTES]; }

    // Bytes of memory in use.
    size_t Memory() const { return sizeof *this + index_.Memory(); }

  private:
    const TableIndex index_;
    const int entryBytes_;
    const uint32_t serial_;
    std::vector<std::string> paths_;
    std::vector<std::unique_ptr<SharedFile>> parts_;
};
