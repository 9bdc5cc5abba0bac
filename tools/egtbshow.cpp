#include "tools/egtbshow.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "core/san.h"
#include "egtb/tablebases.h"
#include "egtb/tablepath.h"
#include "egtb/tableprobe.h"
#include "egtb/tablestats.h"
#include "egtb/tablestore.h"
#include "tools/progress.h"

namespace {

std::string Describe(TableValue value) {
    if (value == TABLE_DRAW) return "draw";
    if (value == MatedIn(0)) return "mate";
    return (IsWin(value) ? "wins, mate in " : "loses, mated in ") + std::to_string(MateMoves(value));
}

void LoadWith(TableStore& store, const TableClass& tableClass, bool withSuccessors) {
    std::vector<int> needed;
    if (withSuccessors) needed = SuccessorClasses(tableClass);
    needed.push_back(tableClass.Number);
    store.Load(needed);
}

void ShowSide(const TableClass& tableClass, const TableStore& store, const TableStatistics& statistics,
              int side) {
    const TableStatistics::SideToMove& counts = statistics.Of[side];
    const auto percent = [&](int64_t part) {
        return 100.0 * static_cast<double>(part) /
               static_cast<double>(std::max<int64_t>(counts.Positions(), 1));
    };
    std::printf("%s to move: %" PRId64 " positions, wins %" PRId64 " (%.2f%%), draws %" PRId64
                " (%.2f%%), losses %" PRId64 " (%.2f%%)\n",
                side == WHITE ? "White" : "Black", counts.Positions(), counts.Wins, percent(counts.Wins),
                counts.Draws, percent(counts.Draws), counts.Losses, percent(counts.Losses));
    const auto showLongest = [&](const char* what, const TableStatistics::Longest& longest) {
        TablePosition position;
        const int tableSide = tableClass.HasBlackFile() ? side : WHITE;
        if (!store.Table(tableClass.Number, tableSide).Index().PositionAt(longest.Number, &position)) return;
        if (tableSide != side) position = ChangeSides(position);
        std::printf("  longest %s %d, %" PRId64 " positions: %s\n", what, longest.Moves, longest.Positions,
                    FenOf(position).c_str());
    };
    if (counts.Wins > 0) showLongest("win: mate in", counts.Win);
    if (counts.Losses > 0) showLongest("loss: mated in", counts.Loss);
}

// Calls show for each class; false when one call says so or a class can't be read, which is told.
template <typename Show>
bool ForEachClass(const std::vector<int>& classNumbers, Show show) {
    bool isGood = true;
    for (const int number : classNumbers) {
        try {
            isGood = show(TableClasses[number]) && isGood;
        } catch (const TableError& error) {
            std::fprintf(stderr, "%s: %s\n", TableClasses[number].Name, error.what());
            isGood = false;
        }
        std::fflush(stdout);
    }
    return isGood;
}

// The engine's path for a directory.
void RegisterDirectory(const std::string& directory) {
    if (SplitTablePath(directory) != std::vector<std::string>{directory}) {
        throw TableError("in a path of the engine " + directory + " would not be one directory");
    }
    SetTablebasePath(directory.c_str());
    RegisterTablebases();
}

}  // namespace

bool VerifyTables(const std::vector<int>& classNumbers, const std::string& directory, int threads) {
    TableStore store(directory);
    return ForEachClass(classNumbers, [&](const TableClass& tableClass) {
        const Progress clock;
        LoadWith(store, tableClass, true);
        TablePosition first;
        const int64_t faults = CountFaults(tableClass, store, threads, &first);
        if (faults == 0) {
            std::printf("%-7s good, %.1f seconds\n", tableClass.Name, clock.Seconds());
        } else {
            std::printf("%-7s %" PRId64 " entries are wrong; the first one: %s\n", tableClass.Name, faults,
                        FenOf(first).c_str());
        }
        return faults == 0;
    });
}

bool ShowStatistics(const std::vector<int>& classNumbers, const std::string& directory, int threads) {
    TableStore store(directory);
    return ForEachClass(classNumbers, [&](const TableClass& tableClass) {
        LoadWith(store, tableClass, false);
        const TableStatistics statistics = CountTable(tableClass, store, threads);
        std::printf("%s\n", tableClass.Name);
        for (const int side : {WHITE, BLACK}) ShowSide(tableClass, store, statistics, side);
        std::printf("  mutual zugzwangs: %" PRId64 " that White wins, %" PRId64 " that Black wins, %" PRId64
                    " that whoever is to move loses\n",
                    statistics.WhiteZugzwangs, statistics.BlackZugzwangs, statistics.FullZugzwangs);
        return true;
    });
}

std::vector<int> FindClasses(const std::string& directory) {
    const TableStore store(directory);
    std::vector<int> found;
    for (int number = 1; number <= LAST_CLASS_OF_5; ++number) {
        if (store.HasFiles(TableClasses[number])) found.push_back(number);
    }
    return found;
}

bool ShowPosition(const std::string& fen, const std::string& directory) {
    LoadCommonFEN(fen.c_str());
    if (const char* fault = FindPositionFault()) throw TableError(std::string("illegal position: ") + fault);
    RegisterDirectory(directory);
    TableValue value = TABLE_DRAW;
    if (!ProbeTable(&value)) {
        std::printf("The tables in %s don't have this position.\n", directory.c_str());
        return false;
    }
    std::printf("%s\n", Describe(value).c_str());
    struct Line {
        std::string Text;
        TableValue Value;
        bool IsKnown;
    };
    std::vector<Line> lines;
    MoveListTop = 0;
    GenerateMoves();
    for (int i = 0; i < MoveListTop; ++i) {
        const Move move = MoveList[i].Move;
        if (!LeavesKingSafe(move)) continue;
        Line line{MoveToSan(move), TABLE_DRAW, true};
        MakeMove(move, 1);
        // Two kings have no table.
        line.IsKnown = board.PieceCount == 2 || ProbeTable(&line.Value);
        UnmakeMove();
        line.Value = BeforeMove(line.Value);
        lines.push_back(line);
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return a.IsKnown != b.IsKnown ? a.IsKnown : IsBetter(a.Value, b.Value);
    });
    for (const Line& line : lines) {
        std::printf("  %-7s %s\n", line.Text.c_str(),
                    line.IsKnown ? Describe(line.Value).c_str() : "unknown");
    }
    return true;
}

bool ListTables(const std::string& directory) {
    VerboseRegistration = 1;
    RegisterDirectory(directory);
    if (FoundPieces > 0) {
        std::printf("%d piece EGTB files found\n", FoundPieces);
    } else {
        std::printf("EGTB files not found\n");
    }
    return FoundPieces > 0;
}
