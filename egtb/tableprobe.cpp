#include "egtb/tableprobe.h"

#include <cstdlib>

#include "core/board.h"
#include "egtb/tablebases.h"
#include "egtb/tablecache.h"

namespace {

// With six men nothing takes longer than 262 moves; longer mates are errors of the file. Search scores are
// clear of other scores for far more.
constexpr int LONGEST_MATE = 400;

// Takes the men over; false when the sets of an edited board don't agree with its squares: they name men who
// were taken off, and only one king of a side. Two men on one square are nothing that can be played.
bool TakeBoard(TablePosition* position) {
    for (const int side : {WHITE, BLACK}) {
        for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
            position->Men[side][piece] = board.Pieces[piece][side];
        }
        if (OccupiedBy(*position, side) != board.Occupied[side]) return false;
        if (position->Men[side][KING] == 0) return false;
    }
    position->SideToMove = board.SideToMove;
    position->DoubleStep = DoubleStepSquare();
    return true;
}

// What the entry of the file says; the table is given up when that can't be.
bool ReadValue(int number, int side, int64_t index, TableValue* value) {
    const TableFile& file = *RegisteredTables[number][side];
    const int64_t place = index * file.EntryBytes();
    const uint8_t* entry = FindTableEntry(file, place);
    if (entry == nullptr) {
        DisableTable(number, side, place, "nothing can be read");
        return false;
    }
    const int code = file.EntryBytes() == 1 ? static_cast<int8_t>(entry[0])
                                            : static_cast<int16_t>(entry[0] | entry[1] << 8);
    *value = ValueOfCode(code, file.EntryBytes());
    if (*value != TABLE_BROKEN && MateMoves(*value) <= LONGEST_MATE) return true;
    DisableTable(number, side, place, "bad entry");
    return false;
}

}  // namespace

bool ProbeTable(TableValue* value) {
    if (static_cast<int>(board.PieceCount) > FoundPieces || board.CastlingFlags != 0) return false;
    TablePosition position;
    if (!TakeBoard(&position)) return false;
    const int found = FindTableClass(MenOf(position, WHITE), MenOf(position, BLACK));
    const int number = std::abs(found);
    if (number == 0) return false;
    const int side = TableSide(TableClasses[number], found < 0, &position);
    const TableFile* file = RegisteredTables[number][side].get();
    if (file == nullptr || !IsPlayable(position)) return false;
    const int64_t index = file->Index().IndexOf(position);
    return index >= 0 && index < file->Index().FileEntries() && ReadValue(number, side, index, value);
}

bool ProbeTablebase(int* score) {
    TableValue value = TABLE_DRAW;
    if (!ProbeTable(&value)) return false;
    const int plies = 2 * MateMoves(value);
    *score = IsWin(value) ? TABLEBASE_MATE - plies : IsLoss(value) ? plies - TABLEBASE_MATE : 0;
    return true;
}
