#include "tests/support/tablewriter.h"

#include <filesystem>
#include <fstream>

#include "egtb/tableclass.h"
#include "egtb/tableindex.h"

namespace {

void PutEntry(std::ostream& file, TableValue value, int entryBytes) {
    const auto code = static_cast<unsigned>(CodeOfValue(value, entryBytes));
    for (int i = 0; i < entryBytes; ++i) file.put(static_cast<char>(code >> 8 * i & 255));
}

}  // namespace

TableValue MadeUpValue(const char* name, int sideToMove, int64_t index) {
    constexpr unsigned LONGEST = 120;
    uint64_t hash = static_cast<uint64_t>(index) * 2 + static_cast<uint64_t>(sideToMove);
    for (; *name != '\0'; ++name) hash = (hash ^ static_cast<unsigned char>(*name)) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 32;
    return static_cast<TableValue>(hash % (2 * LONGEST + 1)) - static_cast<TableValue>(LONGEST);
}

int64_t TableFileBytes(const char* name, int sideToMove) {
    const TableClass& tableClass = TableClasses[FindTableClass(name)];
    return TableIndex(tableClass, sideToMove).FileEntries() * tableClass.EntryBytes();
}

void WriteTable(const std::string& path, const char* name, int sideToMove) {
    const int entryBytes = TableClasses[FindTableClass(name)].EntryBytes();
    const int64_t entries = TableFileBytes(name, sideToMove) / entryBytes;
    std::ofstream file(path, std::ios::binary);
    for (int64_t i = 0; i < entries; ++i) PutEntry(file, MadeUpValue(name, sideToMove, i), entryBytes);
}

void WriteSparseTable(const std::string& path, int64_t bytes, const std::map<int64_t, TableValue>& entries,
                      int entryBytes) {
    std::ofstream file(path, std::ios::binary);
    for (const auto& [index, value] : entries) {
        file.seekp(index * entryBytes);
        PutEntry(file, value, entryBytes);
    }
    file.close();
    std::filesystem::resize_file(path, static_cast<uintmax_t>(bytes));
}
