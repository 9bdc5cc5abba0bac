#include "egtb/tablecache.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

#include "egtb/tablebases.h"
#include "egtb/tablereport.h"
#include "platform/platform.h"

// Any block may stand in any place: a cache is small, and in sets of a few places much of it would lie idle
// while blocks that are wanted push one another out. A chain of a hash table finds a block as fast as a set
// would. What makes room is the first block, going round, that has not been used since the last time round.

namespace {

constexpr int NONE = -1;

struct Block {
    uint64_t Key;  // of the file and its block, or NO_KEY
    int32_t Next;  // of its chain, or NONE
    int32_t WasUsed;
};
constexpr uint64_t NO_KEY = 0;

// A block needs its bytes, its record and up to two chains of the hash table.
constexpr size_t BYTES_PER_BLOCK = TABLE_BLOCK_BYTES + sizeof(Block) + 2 * sizeof(int32_t);

uint8_t* Pool = nullptr;    // what follows lies in it, in this order
uint8_t* Data = nullptr;    // TABLE_BLOCK_BYTES for each block
Block* Blocks = nullptr;    // BlockCount of them
int32_t* Chains = nullptr;  // the first block of each, or NONE; a power of two of them
int BlockCount = 0;
int ChainBits = 0;
int NextPlace = 0;  // where room is looked for next

// Two bytes of a file that is read without a cache.
uint8_t DirectEntry[2];

uint64_t KeyOf(const TableFile& file, int64_t block) {
    return uint64_t{file.Serial()} << 32 | static_cast<uint64_t>(block);
}

int32_t* ChainOf(uint64_t key) {
    return Chains + (key * 0x9E3779B97F4A7C15u >> (64 - ChainBits));
}

uint8_t* DataOf(int place) {
    return Data + size_t{TABLE_BLOCK_BYTES} * static_cast<size_t>(place);
}

void Unlink(int place) {
    const uint64_t key = Blocks[place].Key;
    if (key == NO_KEY) return;
    int32_t* link = ChainOf(key);
    while (*link != place) link = &Blocks[*link].Next;
    *link = Blocks[place].Next;
    Blocks[place].Key = NO_KEY;
}

// A place for another block, which is in no chain.
int MakeRoom() {
    const auto goOn = [] { return std::exchange(NextPlace, (NextPlace + 1) % BlockCount); };
    while (Blocks[NextPlace].WasUsed != 0) Blocks[goOn()].WasUsed = 0;
    const int place = goOn();
    Unlink(place);
    return place;
}

// Reads a block into the cache; null when it can't be read.
const uint8_t* ReadBlock(const TableFile& file, int64_t block, uint64_t key) {
    const int64_t start = block * TABLE_BLOCK_BYTES;
    const int place = MakeRoom();
    const int64_t size = std::min<int64_t>(file.Bytes() - start, TABLE_BLOCK_BYTES);
    if (!file.Read(start, DataOf(place), static_cast<size_t>(size))) return nullptr;
    int32_t* const chain = ChainOf(key);
    Blocks[place] = {key, *chain, 0};
    *chain = place;
    return DataOf(place);
}

const uint8_t* FindBlock(const TableFile& file, int64_t block) {
    const uint64_t key = KeyOf(file, block);
    for (int place = *ChainOf(key); place != NONE; place = Blocks[place].Next) {
        if (Blocks[place].Key != key) continue;
        Blocks[place].WasUsed = 1;
        return DataOf(place);
    }
    return ReadBlock(file, block, key);
}

// Divides the bytes of the pool, as many as the blocks need.
void DividePool(size_t blocks) {
    BlockCount = static_cast<int>(blocks);
    ChainBits = static_cast<int>(std::bit_width(blocks));
    Data = Pool;
    Blocks = reinterpret_cast<Block*>(Data + blocks * TABLE_BLOCK_BYTES);
    Chains = reinterpret_cast<int32_t*>(Blocks + blocks);
    std::fill_n(Blocks, blocks, Block{NO_KEY, NONE, 0});
    std::fill_n(Chains, size_t{1} << ChainBits, NONE);
    NextPlace = 0;
}

}  // namespace

void AllocateTablebaseCache() {
    FreeTablebaseCache();
    CountTablebases();
    if (FoundPieces == 0 || EGTBHashSize < SMALLEST_TABLEBASE_CACHE) return;
    const size_t blocks = std::max<size_t>(static_cast<size_t>(EGTBHashSize) / BYTES_PER_BLOCK, 1);
    Pool = static_cast<uint8_t*>(AllocateTable(blocks * BYTES_PER_BLOCK));
    if (Pool != nullptr) return DividePool(blocks);
    ReportTable("An error occured while memory allocation!");
    FoundPieces = 0;
}

void FreeTablebaseCache() {
    FreeTable(Pool);
    Pool = nullptr;
    BlockCount = 0;
}

int CachedBlockLimit() {
    return BlockCount;
}

const uint8_t* FindTableEntry(const TableFile& file, int64_t place) {
    if (Pool == nullptr) {
        const bool isRead = file.Read(place, DirectEntry, static_cast<size_t>(file.EntryBytes()));
        return isRead ? DirectEntry : nullptr;
    }
    const uint8_t* block = FindBlock(file, place / TABLE_BLOCK_BYTES);
    return block == nullptr ? nullptr : block + place % TABLE_BLOCK_BYTES;
}
