#include "egtb/tablestore.h"

#include <algorithm>
#include <set>

#include "egtb/tablepath.h"
#include "platform/platform.h"

namespace {

// Sides to move that have a table of their own.
std::vector<int> SidesOf(const TableClass& tableClass) {
    return tableClass.HasBlackFile() ? std::vector<int>{WHITE, BLACK} : std::vector<int>{WHITE};
}

}  // namespace

std::string TablePath(const std::string& directory, const TableClass& tableClass, int sideToMove) {
    const std::string name = TableName(tableClass, sideToMove), found = TableDirectory(directory).Find(name);
    return found.empty() ? JoinPath(directory, name) : found;
}

LoadedTable::LoadedTable(const std::string& directory, const TableClass& tableClass, int sideToMove)
    : file_(tableClass, sideToMove) {
    const std::string path = TablePath(directory, tableClass, sideToMove);
    if (IsSplit(tableClass))
        throw TableError(std::string(tableClass.Name) + " is too large for a single file");
    if (!file_.Open({path})) throw TableError(path + " can't be opened");
    if (!file_.HasRightLength()) throw TableError(path + " has not the length of its class");
    codes_.resize(static_cast<size_t>(file_.Bytes()));
    for (size_t place = 0; place < codes_.size(); place += TABLE_BLOCK_BYTES) {
        const size_t size = std::min(codes_.size() - place, size_t{TABLE_BLOCK_BYTES});
        if (!file_.Read(static_cast<int64_t>(place), &codes_[place], size)) {
            throw TableError(path + " can't be read");
        }
    }
}

TableValue LoadedTable::Value(int64_t index) const {
    if (index < 0 || index >= Index().FileEntries()) return TABLE_BROKEN;
    if (file_.EntryBytes() == 1) return ValueOfCode(static_cast<int8_t>(codes_[index]), 1);
    const int low = codes_[2 * index], high = codes_[2 * index + 1];
    return ValueOfCode(static_cast<int16_t>(low | high << 8), 2);
}

bool TableStore::HasFiles(const TableClass& tableClass) const {
    const auto isThere = [&](int side) {
        TableFile file(tableClass, side);
        return file.Open({TablePath(directory_, tableClass, side)}) && file.HasRightLength();
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

TableValue TableStore::EntryOf(const TablePosition& position) const {
    const MenCode white = MenOf(position, WHITE), black = MenOf(position, BLACK);
    if (white == 0 && black == 0) return TABLE_DRAW;
    const int found = FindTableClass(white, black), number = std::abs(found);
    TablePosition placed = position;
    const int side = TableSide(TableClasses[number], found < 0, &placed);
    const LoadedTable& table = Table(number, side);
    return table.Value(table.Index().IndexOf(placed));
}

TableValue TableStore::ValueOf(const TablePosition& position) const {
    const TableValue value = EntryOf(position);
    if (value == TABLE_BROKEN) throw TableError("a table is damaged: nothing for " + FenOf(position));
    return value;
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
    for (const int side : SidesOf(tableClass)) bytes += TableFile(tableClass, side).Bytes();
    return bytes;
}
