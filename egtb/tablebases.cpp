#include "egtb/tablebases.h"

#include <cstdio>
#include <string>
#include <vector>

#include "egtb/tablepath.h"
#include "egtb/tablereport.h"
#include "platform/platform.h"

int UseEGTB = 1;
char tb_path[TB_PATH_SIZE];
int EGTBHashSize = 1048576;
int VerboseRegistration = 0;
std::unique_ptr<TableFile> RegisteredTables[TABLE_CLASSES + 1][2];
int FoundPieces = 0;
int64_t TablebaseMemory = 0;

namespace {

// What a registration meets.
struct FileCounts {
    int Tried = 0, Opened = 0;
    // Paths by class and side of what was found in compressed form only.
    std::string Compressed[TABLE_CLASSES + 1][2];
};

// The file, or the parts up to the first that is missing, as they stand in a directory, with another ending
// behind their names.
std::vector<std::string> FindParts(const TableDirectory& directory, const TableClass& tableClass, int side,
                                   const char* ending) {
    std::vector<std::string> paths;
    const bool isSplit = IsSplit(tableClass);
    for (int part = isSplit ? 0 : WHOLE_FILE;; ++part) {
        const std::string path = directory.Find(TableName(tableClass, side, part) + ending);
        if (!path.empty()) paths.push_back(path);
        if (path.empty() || !isSplit) return paths;
    }
}

// Opens what has been found of a table; null when it can't be used.
std::unique_ptr<TableFile> OpenTable(const std::vector<std::string>& paths, const TableClass& tableClass,
                                     int side, FileCounts* counts) {
    auto file = std::make_unique<TableFile>(tableClass, side);
    counts->Tried += static_cast<int>(paths.size());
    if (!file->Open(paths)) return nullptr;
    counts->Opened += static_cast<int>(paths.size());
    if (file->HasRightLength()) return file;
    ReportTable("*** %s corrupted %lld %lld %lld", paths[0].c_str(), static_cast<long long>(file->Length()),
                static_cast<long long>(file->Bytes()), static_cast<long long>(file->RangeBytes()));
    return nullptr;
}

void RegisterTable(const TableDirectory& directory, const TableClass& tableClass, int side,
                   FileCounts* counts) {
    std::unique_ptr<TableFile>& table = RegisteredTables[tableClass.Number][side];
    if (table != nullptr) return;
    const std::vector<std::string> paths = FindParts(directory, tableClass, side, "");
    if (paths.empty()) {
        const std::vector<std::string> found = FindParts(directory, tableClass, side, COMPRESSED_ENDING);
        if (!found.empty()) counts->Compressed[tableClass.Number][side] = found[0];
        return;
    }
    if (VerboseRegistration) ReportTable("%s found", paths[0].c_str());
    table = OpenTable(paths, tableClass, side, counts);
    if (!VerboseRegistration) return;
    ReportTable(table != nullptr ? "%s registered" : "*** Unable to register %s", paths[0].c_str());
}

void RegisterDirectory(const std::string& path, FileCounts* counts) {
    const TableDirectory directory(path);
    for (const TableClass& tableClass : TableClasses) {
        if (tableClass.Number == 0 || !directory.MayHave(tableClass)) continue;
        RegisterTable(directory, tableClass, WHITE, counts);
        if (tableClass.HasBlackFile()) RegisterTable(directory, tableClass, BLACK, counts);
    }
}

void ReportCompressed(const FileCounts& counts) {
    int found = 0;
    const std::string* first = nullptr;
    for (int number = 1; number <= TABLE_CLASSES; ++number) {
        for (const int side : {WHITE, BLACK}) {
            const std::string& path = counts.Compressed[number][side];
            if (path.empty() || RegisteredTables[number][side] != nullptr) continue;
            if (++found == 1) first = &path;
        }
    }
    if (found == 0) return;
    ReportTable("*** Compressed tables can't be read: %d left out, such as %s", found, first->c_str());
}

}  // namespace

void SetTablebasePath(const char* path) {
    std::snprintf(tb_path, TB_PATH_SIZE, "%s", path);
}

std::string DefaultTablebasePath() {
    const auto isEmpty = [](const std::string& path) { return FindFiles(path, "").empty(); };
    const std::string ours = ProgramDirectory() + "tablebases";
    // Of a directory whose name holds a separator a path can't speak.
    if (SplitTablePath(ours) != std::vector<std::string>{ours}) return ANNOUNCED_TABLE_PATH;
    const bool isAnnouncedEmpty = !IsDriveReady(ANNOUNCED_TABLE_PATH) || isEmpty(ANNOUNCED_TABLE_PATH);
    return isAnnouncedEmpty && !isEmpty(ours) ? ours : ANNOUNCED_TABLE_PATH;
}

void RegisterTablebases() {
    CloseTablebases();
    FileCounts counts;
    for (const std::string& path : SplitTablePath(tb_path)) {
        if (IsDriveReady(path)) RegisterDirectory(path, &counts);
    }
    CountTablebases();
    ReportCompressed(counts);
    if (!VerboseRegistration) return;
    ReportTable("Allocated %dKb for decompression tables, indices, and buffers.",
                static_cast<int>((TablebaseMemory + 1023) / 1024));
    ReportTable("Tried to open %d files. Opened %d files.", counts.Tried, counts.Opened);
}

void CloseTablebases() {
    for (auto& tables : RegisteredTables) {
        for (auto& table : tables) table.reset();
    }
    CountTablebases();
}

void DisableTable(int classNumber, int sideToMove, int64_t place, const char* fault) {
    std::unique_ptr<TableFile>& table = RegisteredTables[classNumber][sideToMove];
    ReportTable("*** %s corrupted, not used any more: %s at byte %lld", table->PathAt(place).c_str(), fault,
                static_cast<long long>(place % TABLE_PART_BYTES));
    table.reset();
    CountTablebases();
}

void CountTablebases() {
    FoundPieces = 0;
    TablebaseMemory = 0;
    for (const TableClass& tableClass : TableClasses) {
        for (const int side : {WHITE, BLACK}) {
            const TableFile* table = RegisteredTables[tableClass.Number][side].get();
            if (table == nullptr) continue;
            // Classes are numbered by their men.
            FoundPieces = tableClass.Men;
            TablebaseMemory += static_cast<int64_t>(table->Memory());
        }
    }
}
