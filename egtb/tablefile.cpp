#include "egtb/tablefile.h"

#include <algorithm>

namespace {

uint32_t LastSerial = 0;

// The bytes of the longer file by the number of the class, 0 before anybody has asked.
int64_t LongerBytes[TABLE_CLASSES + 1];

}  // namespace

bool IsSplit(const TableClass& tableClass) {
    // Of fewer men none comes near it, and numbering a class takes its time.
    if (tableClass.Men < MAX_TABLE_MEN) return false;
    int64_t& bytes = LongerBytes[tableClass.Number];
    if (bytes == 0)
        bytes = std::max(TableFile(tableClass, WHITE).Bytes(), TableFile(tableClass, BLACK).Bytes());
    return bytes > TABLE_PART_BYTES;
}

TableFile::TableFile(const TableClass& tableClass, int sideToMove)
    : index_(tableClass, sideToMove), entryBytes_(tableClass.EntryBytes()), serial_(++LastSerial) {}

bool TableFile::Open(const std::vector<std::string>& paths) {
    paths_ = paths;
    parts_.clear();
    for (const std::string& path : paths) {
        parts_.push_back(std::make_unique<SharedFile>());
        if (!parts_.back()->Open(path, SharedFile::READ_ONLY)) return false;
    }
    return !paths.empty();
}

int64_t TableFile::Length() const {
    int64_t length = 0;
    for (const auto& part : parts_) {
        const int64_t partLength = part->Length();
        if (partLength < 0) return -1;
        length += partLength;
    }
    return length;
}

bool TableFile::HasRightLength() const {
    int64_t left = Bytes();
    for (const auto& part : parts_) {
        const int64_t wanted = std::min(left, TABLE_PART_BYTES);
        if (part->Length() != wanted) return false;
        left -= wanted;
    }
    return left == 0;
}

bool TableFile::Read(int64_t place, void* bytes, size_t size) const {
    const SharedFile& part = *parts_[static_cast<size_t>(place / TABLE_PART_BYTES)];
    return part.ReadAt(place % TABLE_PART_BYTES, bytes, size) == size;
}
