#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "egtb/tablebases.h"
#include "egtb/tablecache.h"
#include "egtb/tableindex.h"
#include "egtb/tableprobe.h"

// Probes of tables that say nothing but draws.

namespace {

namespace fs = std::filesystem;

constexpr const char* NAMES[] = {"kqk", "krkn", "kpkp"};
constexpr int POSITIONS = 1000;

// Files of the classes, in a directory of their own, registered while this lives.
class Tables {
  public:
    explicit Tables(int cacheBytes) {
        fs::create_directory(directory_);
        for (const char* name : NAMES) {
            const TableClass& tableClass = TableClasses[FindTableClass(name)];
            for (const int side : {WHITE, BLACK}) {
                if (side == BLACK && !tableClass.HasBlackFile()) continue;
                const fs::path path = directory_ / (std::string(name) + (side == WHITE ? ".nbw" : ".nbb"));
                std::ofstream file(path, std::ios::binary);
                file << std::string(static_cast<size_t>(TableIndex(tableClass, side).FileEntries()), '\0');
            }
        }
        SetTablebasePath(directory_.c_str());
        RegisterTablebases();
        EGTBHashSize = cacheBytes;
        AllocateTablebaseCache();
    }
    ~Tables() {
        FreeTablebaseCache();
        CloseTablebases();
        fs::remove_all(directory_);
    }
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;

  private:
    const fs::path directory_ = fs::temp_directory_path() / "kestrovan-bench";
};

// Playable positions of a class, drawn at random, White to move.
std::vector<TablePosition> DrawPositions(const TableIndex& index) {
    std::mt19937_64 random(1);
    std::vector<TablePosition> positions;
    while (positions.size() < POSITIONS) {
        TablePosition position;
        const auto number = static_cast<int64_t>(random() % static_cast<uint64_t>(index.OrdinarySize()));
        if (index.PositionAt(number, &position)) positions.push_back(position);
    }
    return positions;
}

// Boards of the positions; with the colours changed where that is asked for.
std::vector<Board> DrawBoards(const TableIndex& index, bool isChanged) {
    std::vector<Board> boards;
    for (const TablePosition& drawn : DrawPositions(index)) {
        const TablePosition position = isChanged ? ChangeSides(drawn) : drawn;
        ClearBoard();
        board.CastlingFlags = 0;
        board.SideToMove = position.SideToMove;
        for (const int side : {WHITE, BLACK}) {
            for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
                for (Bitboard men = position.Men[side][piece]; men != 0;) {
                    AddPiece(PopLowest(men), side, piece);
                }
            }
        }
        boards.push_back(board);
    }
    return boards;
}

const TableClass& ClassOf(const benchmark::State& state) {
    return TableClasses[FindTableClass(NAMES[state.range(0)])];
}

void ProbeAll(benchmark::State& state, int cacheBytes, bool isChanged) {
    ResetBoard();
    const Tables tables(cacheBytes);
    const std::vector<Board> boards = DrawBoards(TableIndex(ClassOf(state), WHITE), isChanged);
    for (auto _ : state) {
        for (const Board& position : boards) {
            board = position;
            TableValue value = 0;
            if (!ProbeTable(&value)) return state.SkipWithError("not covered");
            benchmark::DoNotOptimize(value);
        }
    }
    state.SetItemsProcessed(state.iterations() * POSITIONS);
    ResetBoard();
}

// All blocks stay in the cache.
void ProbeWarm(benchmark::State& state) {
    ProbeAll(state, 1 << 24, false);
}
void ProbeWarmChangedSides(benchmark::State& state) {
    ProbeAll(state, 1 << 24, true);
}

// Every probe reads: a block into a cache that has room for one, or an entry without a cache. The system
// keeps the files in memory.
void ProbeColdBlocks(benchmark::State& state) {
    ProbeAll(state, SMALLEST_TABLEBASE_CACHE, false);
}
void ProbeColdEntries(benchmark::State& state) {
    ProbeAll(state, 0, false);
}

void CopyBoard(benchmark::State& state) {
    const std::vector<Board> boards = DrawBoards(TableIndex(ClassOf(state), WHITE), false);
    for (auto _ : state) {
        for (const Board& position : boards) {
            board = position;
            benchmark::DoNotOptimize(board);
        }
    }
    state.SetItemsProcessed(state.iterations() * POSITIONS);
    ResetBoard();
}

void NumberPositions(benchmark::State& state) {
    const TableIndex index(ClassOf(state), WHITE);
    const std::vector<TablePosition> positions = DrawPositions(index);
    for (auto _ : state) {
        for (const TablePosition& position : positions) benchmark::DoNotOptimize(index.IndexOf(position));
    }
    state.SetItemsProcessed(state.iterations() * POSITIONS);
}

void NumberClass(benchmark::State& state) {
    for (auto _ : state) {
        const TableIndex index(ClassOf(state), WHITE);
        benchmark::DoNotOptimize(index.Size());
    }
}

BENCHMARK(CopyBoard)->Arg(1);
BENCHMARK(NumberPositions)->DenseRange(0, 2);
BENCHMARK(ProbeWarm)->DenseRange(0, 2);
BENCHMARK(ProbeWarmChangedSides)->DenseRange(0, 2);
BENCHMARK(ProbeColdBlocks)->DenseRange(0, 2);
BENCHMARK(ProbeColdEntries)->DenseRange(0, 2);
BENCHMARK(NumberClass)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
