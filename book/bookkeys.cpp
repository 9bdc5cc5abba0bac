#include "book/bookkeys.h"

#include "core/bitboard.h"
#include "core/board.h"
#include "core/keys.h"

namespace {

constexpr uint32_t BLACK_TO_MOVE = 0x07D3ADEB;  // in the first key only
constexpr unsigned WHITE_SLOT = 8;

struct KeyTables {
    std::array<uint32_t, 1024> First{}, Second{};
};

// A word is the low bytes of four draws, the first of them highest; words go to the two tables in turn, the
// second table first.
constexpr KeyTables MakeKeyTables() {
    KeyGenerator generator;
    KeyTables tables;
    for (size_t i = 0; i < tables.First.size(); ++i) {
        for (uint32_t* word : {&tables.Second[i], &tables.First[i]}) {
            for (int byte = 0; byte < 4; ++byte) *word = *word << 8 | (generator.Draw() & 0xFF);
        }
    }
    return tables;
}

constexpr KeyTables Tables = MakeKeyTables();

}  // namespace

const std::array<uint32_t, 1024> BookKeyTable1 = Tables.First;
const std::array<uint32_t, 1024> BookKeyTable2 = Tables.Second;

BookKey CurrentBookKey() {
    BookKey key;
    for (const int side : {WHITE, BLACK}) {
        for (Bitboard men = board.Occupied[side]; men != 0;) {
            const int square = PopLowest(men);
            const unsigned slot = board.PieceOn[square] + (side == WHITE ? WHITE_SLOT : 0);
            const auto index = static_cast<size_t>(64 * slot) + static_cast<size_t>(square);
            key.Key1 ^= BookKeyTable1[index];
            key.Key2 ^= BookKeyTable2[index];
        }
    }
    if (board.SideToMove == BLACK) key.Key1 ^= BLACK_TO_MOVE;
    return key;
}
