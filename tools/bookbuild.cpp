#include "tools/bookbuild.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "book/bookerror.h"
#include "tools/progress.h"

namespace {

using FilePointer = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

// Games and lines by what has become of them.
struct Counts {
    int64_t Used = 0, SetUp = 0, NoResult = 0, NoMoves = 0, Broken = 0;

    int64_t All() const { return Used + SetUp + NoResult + NoMoves + Broken; }

    void Add(GameUse use) {
        switch (use) {
            case GameUse::USED:
                ++Used;
                break;
            case GameUse::SET_UP:
                ++SetUp;
                break;
            case GameUse::NO_RESULT:
                ++NoResult;
                break;
            case GameUse::NO_MOVES:
                ++NoMoves;
                break;
        }
    }
};

void ShowCounts(const Counts& counts, Progress& progress) {
    if (!progress.IsDue()) return;
    char text[80];
    std::snprintf(text, sizeof text, "%" PRId64 " games, %.0f seconds", counts.All(), progress.Seconds());
    progress.Show(text);
}

// Reads the games of a file and hands them to `add`, which says what has become of them.
template <typename Add>
void ReadFile(const std::string& path, int depth, Counts& counts, Progress& progress, Add add) {
    constexpr int64_t GAMES_PER_LOOK = 256;
    const FilePointer file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (file == nullptr) throw BookError("can't open " + path);
    PgnReader reader(file.get(), depth);
    PgnGame game;
    for (PgnStatus status = reader.Next(game); status != PgnStatus::END; status = reader.Next(game)) {
        if (status == PgnStatus::BROKEN) {
            ++counts.Broken;
            progress.Clear();
            std::fprintf(stderr, "%s:%" PRId64 ": game %" PRId64 ": %s\n", path.c_str(), game.FaultLine,
                         game.Number, game.Fault.c_str());
        } else {
            counts.Add(add(game));
        }
        if (game.Number % GAMES_PER_LOOK == 0) ShowCounts(counts, progress);
    }
    if (reader.HasReadError()) throw BookError("can't read " + path);
}

void RefuseInput(const std::vector<std::string>& inputs, const std::string& output) {
    for (const std::string& input : inputs) {
        std::error_code error;
        if (std::filesystem::equivalent(input, output, error)) {
            throw BookError("the book would overwrite " + input + ", which it is made of");
        }
    }
}

void PrintSummary(const Counts& games, const Counts& lines, const BookTotals& totals, double seconds) {
    std::printf("games used        %10" PRId64 "\n", games.Used);
    std::printf("skipped: broken   %10" PRId64 "\n", games.Broken);
    std::printf("         set up   %10" PRId64 "\n", games.SetUp);
    std::printf("         no result%10" PRId64 "\n", games.NoResult);
    std::printf("         no moves %10" PRId64 "\n", games.NoMoves);
    if (lines.All() > 0) {
        std::printf("lines used        %10" PRId64 "\n", lines.Used);
        std::printf("lines skipped     %10" PRId64 "\n", lines.All() - lines.Used);
    }
    std::printf("positions         %10" PRId64 "\n", totals.Positions);
    std::printf("moves             %10" PRId64 "\n", totals.Moves);
    std::printf("bytes             %10" PRId64 "\n", totals.Bytes);
    std::printf("seconds           %10.1f\n", seconds);
    std::printf("games per second  %10.0f\n",
                static_cast<double>(games.All() + lines.All()) / std::max(seconds, 0.001));
    if (PeakMemory() > 0) std::printf("peak memory (MB)  %10" PRId64 "\n", PeakMemory() >> 20);
}

}  // namespace

void BuildBook(const std::vector<std::string>& gameFiles, const std::vector<std::string>& lineFiles,
               const std::string& bookPath, const BookOptions& options) {
    RefuseInput(gameFiles, bookPath);
    RefuseInput(lineFiles, bookPath);
    Progress progress;
    Counts games, lines;
    BookBuilder builder(options, bookPath);
    for (const std::string& path : gameFiles) {
        ReadFile(path, options.Depth, games, progress,
                 [&](const PgnGame& game) { return builder.AddGame(game); });
    }
    for (const std::string& path : lineFiles) {
        ReadFile(path, options.Depth, lines, progress,
                 [&](const PgnGame& game) { return builder.AddLine(game); });
    }
    const BookTotals totals = builder.Write();
    progress.Clear();
    PrintSummary(games, lines, totals, progress.Seconds());
}
