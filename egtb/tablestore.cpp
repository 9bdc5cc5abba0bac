#include "egtb/tablestore.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>

#include "platform/platform.h"
#include "platform/sharedfile.h"

namespace {

// Sides to move that have a table of their own.
std::vector<int> SidesOf(const TableClass& tableClass) {
    return tableClass.HasBlackFile() ? std::vector<int>{WHITE, BLACK} : std::vector<int>{WHITE};
}

int64_t FileBytes(const TableIndex& index, const TableClass& tableClass) {
    return index.FileEntries() * tableClass.EntryBytes();
}

}  // namespace

std::string TableFileName(const std::string& directory, const TableClass& tableClass, int sideToMove) {
    const bool hasSeparator = directory.empty() || directory.back() == '/' || directory.back() == '\\';
    return directory + (hasSeparator ? "" : "/") + tableClass.Name + (sideToMove == WHITE ? ".nbw" : ".nbb");
}

LoadedTable::LoadedTable(const std::string& directory, const TableClass& tableClass, int sideToMove)
    : index_(tableClass, sideToMove), entryBytes_(tableClass.EntryBytes()) {
    const std::string name = TableFileName(directory, tableClass, sideToMove);
    const int64_t length = FileBytes(index_, tableClass);
    SharedFile file;
    if (!file.Open(name, SharedFile::READ_ONLY)) throw TableError(name + " can't be read");
    if (file.Length() != length) throw TableError(name + " has not the length of its class");
    codes_.resize(static_cast<size_t>(length));
    if (file.ReadAt(0, codes_.data(), codes_.size()) != codes_.size()) {
        throw TableError(name + " can't be read to its end");
    }
}

TableValue LoadedTable::Value(int64_t index) const {
    if (index < 0 || index >= index_.FileEntries()) return TABLE_BROKEN;
    if (entryBytes_ == 1) return ValueOfCode(static_cast<int8_t>(codes_[index]), 1);
    const int low = codes_[2 * index], high = codes_[2 * index + 1];
    return ValueOfCode(static_cast<int16_t>(low | high << 8), 2);
}

bool TableStore::HasFiles(const TableClass& tableClass) const {
    const auto isThere = [&](int side) {
        return FileLength(TableFileName(directory_, tableClass, side)) ==
               FileBytes(TableIndex(tableClass, side), tableClass);
    };
    const std::vector<int> sides = SidesOf(tableClass);
    return std::all_of(sides.begin(), sides.end(), isThere);
}

void TableStore::Load(const std::vector<int>& classNumbers) {
    for (int number = 1; number <= TABLE_CLASSES; ++number) {
        const bool isWanted =
            std::find(classNumbers.begin(), classNumbers.end(), number) != classNumbers.end();
        for (const int side : SidesOf(TableClasses[number])) {
            std::unique_ptr<LoadedTable>& table = tables_[number][side];
            if (!isWanted) table.reset();
            if (isWanted && table == nullptr) {
                table = std::make_unique<LoadedTable>(directory_, TableClasses[number], side);
            }
        }
    }
}

const LoadedTable& TableStore::Table(int classNumber, int sideToMove) const {
    const std::unique_ptr<LoadedTable>& table = tables_[classNumber][sideToMove];
    if (table == nullptr) throw TableError(std::string(TableClasses[classNumber].Name) + " is not loaded");
    return *table;
}

TableValue TableStore::ValueOf(const TablePosition& position) const {
    const MenCode white = MenOf(position, WHITE), black = MenOf(position, BLACK);
    if (white == 0 && black == 0) return TABLE_DRAW;
    const int found = FindTableClass(white, black), number = std::abs(found);
    TablePosition placed = position;
    const int side = TableSide(TableClasses[number], found < 0, &placed);
    const LoadedTable& table = Table(number, side);
    return table.Value(table.Index().IndexOf(placed));
}

int TableSide(const TableClass& tableClass, bool isReversed, TablePosition* position) {
    if (isReversed || (!tableClass.HasBlackFile() && position->SideToMove == BLACK)) {
        *position = ChangeSides(*position);
    }
    return position->SideToMove;
}

std::vector<int> SuccessorClasses(const TableClass& tableClass) {
    std::set<int> successors;
    const auto add = [&](int side, MenCode own, MenCode others) {
        const MenCode white = side == WHITE ? own : others, black = side == WHITE ? others : own;
        if (const int number = FindTableClass(white, black)) successors.insert(std::abs(number));
    };
    for (const int side : {WHITE, BLACK}) {
        const MenCode own = tableClass.Code[side], others = tableClass.Code[ChangeSide(side)];
        std::vector<MenCode> captures, promotions;
        for (const unsigned piece : TableKinds) {
            if (CountMen(others, piece) > 0) captures.push_back(others - OneMan(piece));
        }
        if (CountMen(own, PAWN) > 0) {
            for (const unsigned piece : {QUEEN, ROOK, BISHOP, KNIGHT}) {
                promotions.push_back(own - OneMan(PAWN) + OneMan(piece));
            }
        }
        for (const MenCode left : captures) add(side, own, left);
        for (const MenCode promoted : promotions) {
            add(side, promoted, others);
            for (const MenCode left : captures) add(side, promoted, left);
        }
    }
    return {successors.begin(), successors.end()};
}

std::vector<int> WithSuccessors(const std::vector<int>& classNumbers) {
    std::set<int> all(classNumbers.begin(), classNumbers.end());
    for (std::vector<int> waiting = classNumbers; !waiting.empty();) {
        const int number = waiting.back();
        waiting.pop_back();
        for (const int successor : SuccessorClasses(TableClasses[number])) {
            if (all.insert(successor).second) waiting.push_back(successor);
        }
    }
    std::vector<int> order(all.begin(), all.end());
    // A capture leaves fewer men and a promotion fewer pawns.
    std::stable_sort(order.begin(), order.end(), [](int a, int b) {
        const auto rank = [](const TableClass& c) {
            return c.Men * 10 + CountMen(c.Code[WHITE], PAWN) + CountMen(c.Code[BLACK], PAWN);
        };
        return rank(TableClasses[a]) < rank(TableClasses[b]);
    });
    return order;
}

int64_t TableBytes(const TableClass& tableClass) {
    int64_t bytes = 0;
    for (const int side : SidesOf(tableClass)) bytes += FileBytes(TableIndex(tableClass, side), tableClass);
    return bytes;
}
