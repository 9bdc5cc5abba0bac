#include "egtb/tableclass.h"

#include <cstdint>
#include <cstring>

namespace {

// The sets of one to three men of a side, and the bare king, in the order of the tables.
constexpr int SIDE_SETS = 56;
constexpr int FIRST_SET[] = {0, 1, 6, 21, SIDE_SETS};  // by the number of men
constexpr int MEN_CODES = 1 << 2 * TABLE_KINDS;

struct ClassTables {
    std::array<TableClass, TABLE_CLASSES + 1> Classes{};
    MenCode Sets[SIDE_SETS] = {};
    uint8_t SetOfCode[MEN_CODES] = {};           // SIDE_SETS for a code of no set
    int16_t Numbers[SIDE_SETS][SIDE_SETS] = {};  // see FindTableClass

    constexpr void AddSets(int men, MenCode code, int firstKind, int* count) {
        if (men == 0) {
            Sets[(*count)++] = code;
            return;
        }
        for (int kind = firstKind; kind < TABLE_KINDS; ++kind) {
            AddSets(men - 1, code + OneMan(TableKinds[kind]), kind, count);
        }
    }

    constexpr void AddClass(int number, int strong, int weak, int men) {
        TableClass& added = Classes[number];
        added.Number = number;
        added.Men = men;
        int length = 0;
        for (const int side : {WHITE, BLACK}) {
            added.Code[side] = Sets[side == WHITE ? strong : weak];
            added.Name[length++] = 'k';
            for (const unsigned piece : TableKinds) {
                for (int i = CountMen(added.Code[side], piece); i > 0; --i) {
                    added.Name[length++] = PROMOTION_LETTERS[piece];
                }
            }
        }
        // A class of equal sides keeps the positive number.
        Numbers[weak][strong] = static_cast<int16_t>(-number);
        Numbers[strong][weak] = static_cast<int16_t>(number);
    }

    constexpr void AddClasses(int strongMen, int weakMen, int* number) {
        for (int strong = FIRST_SET[strongMen]; strong < FIRST_SET[strongMen + 1]; ++strong) {
            const int first = strongMen == weakMen ? strong : FIRST_SET[weakMen];
            for (int weak = first; weak < FIRST_SET[weakMen + 1]; ++weak) {
                AddClass(++*number, strong, weak, strongMen + weakMen + 2);
            }
        }
    }

    constexpr ClassTables() {
        int count = 0;
        for (int men = 0; men <= MAX_SIDE_MEN; ++men) AddSets(men, 0, 0, &count);
        for (uint8_t& set : SetOfCode) set = SIDE_SETS;
        for (int set = 0; set < SIDE_SETS; ++set) SetOfCode[Sets[set]] = static_cast<uint8_t>(set);
        int number = 0;
        for (const auto& [strong, weak] : {std::array{1, 0}, {2, 0}, {1, 1}, {3, 0}, {2, 1}}) {
            AddClasses(strong, weak, &number);
        }
        // Four men against two, kings included, then three against three; five against one has no tables.
        AddClasses(3, 1, &number);
        AddClasses(2, 2, &number);
    }
};

constexpr ClassTables TABLES;
static_assert(TABLES.Classes[TABLE_CLASSES].Number == TABLE_CLASSES);

}  // namespace

constinit const std::array<TableClass, TABLE_CLASSES + 1> TableClasses = TABLES.Classes;

int TableClass::EntryBytes() const {
    return Men == MAX_TABLE_MEN || std::strcmp(Name, "kppkp") == 0 ? 2 : 1;
}

int FindTableClass(MenCode first, MenCode second) {
    const int firstSet = TABLES.SetOfCode[first % MEN_CODES],
              secondSet = TABLES.SetOfCode[second % MEN_CODES];
    return firstSet == SIDE_SETS || secondSet == SIDE_SETS ? 0 : TABLES.Numbers[firstSet][secondSet];
}

int FindTableClass(const char* name) {
    for (const TableClass& candidate : TableClasses) {
        if (candidate.Number != 0 && std::strcmp(candidate.Name, name) == 0) return candidate.Number;
    }
    return 0;
}
