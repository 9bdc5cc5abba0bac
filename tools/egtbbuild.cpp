#include "tools/egtbbuild.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>

#include "egtb/newfile.h"
#include "egtb/tablebuild.h"
#include "egtb/tablestats.h"
#include "egtb/tablestore.h"
#include "platform/platform.h"
#include "tools/interruption.h"
#include "tools/progress.h"

namespace {

double Megabytes(int64_t bytes) {
    return static_cast<double>(bytes) / (1 << 20);
}

// What is in memory at the most while the class is made.
int64_t NeededMemory(const TableClass& tableClass) {
    int64_t bytes = TableBuilder::WorkBytes(tableClass) + TableBytes(tableClass);
    for (const int successor : SuccessorClasses(tableClass)) bytes += TableBytes(TableClasses[successor]);
    return bytes;
}

// What can't be made is refused at the beginning, not after hours of work for smaller classes.
void RefuseTooLarge(const std::vector<int>& missing, int64_t memoryBytes) {
    for (const int number : missing) {
        const TableClass& tableClass = TableClasses[number];
        if (IsSplit(tableClass)) throw TableError(std::string(tableClass.Name) + " is too large to be made");
        const int64_t needed = NeededMemory(tableClass);
        if (needed <= memoryBytes) continue;
        char text[120];
        std::snprintf(text, sizeof text, "%s takes %.0f MB of memory, and --memory allows %.0f",
                      tableClass.Name, Megabytes(needed), Megabytes(memoryBytes));
        throw TableError(text);
    }
}

void CheckDirectory(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (!std::filesystem::is_directory(directory)) {
        throw TableError(directory + " is not a directory and can't be made one");
    }
    const std::string trial = JoinPath(directory, "kestrovan-egtb.try");
    NewFile(trial).Complete();
    std::filesystem::remove(trial);
}

void ShowProgress(const TableBuilder::Progress& state, Progress& progress) {
    if (!progress.IsDue()) return;
    char text[80];
    if (state.Step == 0) {
        std::snprintf(text, sizeof text, "%s: looking at all positions, %d%%", state.Class.Name,
                      state.Percent);
    } else {
        std::snprintf(text, sizeof text, "%s: mates in %d of at least %d, %d%%", state.Class.Name, state.Step,
                      state.LastStep, state.Percent);
    }
    progress.Show(text);
}

void VerifyClass(const TableClass& tableClass, TableStore& store, int threads) {
    std::vector<int> needed = SuccessorClasses(tableClass);
    needed.push_back(tableClass.Number);
    store.Load(needed);
    TablePosition first;
    if (CountFaults(tableClass, store, threads, &first) > 0) {
        throw TableError(std::string(tableClass.Name) + " does not agree with the moves of its positions");
    }
}

// False when it was interrupted.
bool BuildClass(const TableClass& tableClass, TableStore& store, const TableBuildOptions& options,
                Progress& progress) {
    const double start = progress.Seconds();
    store.Load(SuccessorClasses(tableClass));
    TableBuilder::Options buildOptions;
    buildOptions.Threads = options.Threads;
    buildOptions.Stop = &IsInterrupted;
    buildOptions.Report = [&](const TableBuilder::Progress& state) { ShowProgress(state, progress); };
    buildOptions.Warn = [&](const std::string& what) {
        progress.Clear();
        std::fprintf(stderr, "%s; the work goes on\n", what.c_str());
    };
    {
        TableBuilder builder(tableClass, store, buildOptions);
        if (!builder.Build()) return false;
        builder.WriteFiles();
    }
    if (options.Verifies) VerifyClass(tableClass, store, options.Threads);
    progress.Clear();
    std::printf("%-7s %8.1f MB %8.1f seconds%s\n", tableClass.Name, Megabytes(TableBytes(tableClass)),
                progress.Seconds() - start, options.Verifies ? ", verified" : "");
    std::fflush(stdout);
    return true;
}

}  // namespace

bool BuildTables(const std::vector<int>& classNumbers, const TableBuildOptions& options) {
    TableStore store(options.Directory);
    std::vector<int> missing = WithSuccessors(classNumbers);
    const size_t all = missing.size();
    std::erase_if(missing, [&](int number) { return store.HasFiles(TableClasses[number]); });
    RefuseTooLarge(missing, options.MemoryBytes);
    if (!missing.empty()) CheckDirectory(options.Directory);
    WatchInterruptions();
    std::printf("%zu classes, %zu to be made\n", all, missing.size());
    std::fflush(stdout);
    Progress progress;
    int64_t bytes = 0;
    for (size_t i = 0; i < missing.size(); ++i) {
        const TableClass& tableClass = TableClasses[missing[i]];
        if (!BuildClass(tableClass, store, options, progress)) {
            progress.Clear();
            std::printf("Stopped in %s, %zu classes left; the same command goes on from here\n",
                        tableClass.Name, missing.size() - i);
            return false;
        }
        bytes += TableBytes(tableClass);
    }
    progress.Clear();
    std::printf("%zu classes made: %.1f MB in %.1f seconds, %.0f MB of memory at most\n", missing.size(),
                Megabytes(bytes), progress.Seconds(), Megabytes(PeakMemory()));
    return true;
}
