#include "tuning/samples.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "core/psqt.h"
#include "eval/evaluate.h"
#include "tuning/labelled.h"
#include "tuning/quiet.h"

namespace {

struct LabelledLine {
    std::string Text;
    float Result;
    uint8_t Source;
};

std::vector<LabelledLine> ReadLines(const std::vector<std::string>& paths, ReadingReport& report) {
    std::vector<LabelledLine> lines;
    for (size_t source = 0; source < paths.size(); ++source) {
        std::ifstream file(paths[source]);
        std::string text;
        while (std::getline(file, text)) {
            if (text.find_first_not_of(" \t\r") == std::string::npos) continue;
            ++report.Lines;
            const double result = ResultOf(text.c_str());
            if (result < 0) {
                ++report.WithoutResult;
            } else {
                lines.push_back({text, static_cast<float>(result), static_cast<uint8_t>(source)});
            }
        }
        if (!file.eof()) throw std::runtime_error("can't read " + paths[source]);
    }
    return lines;
}

// Keeps `limit` of the lines, evenly spread.
void ThinOut(std::vector<LabelledLine>& lines, int64_t limit) {
    const auto count = static_cast<int64_t>(lines.size());
    if (count <= limit) return;
    for (int64_t i = 0; i < limit; ++i) {
        std::swap(lines[static_cast<size_t>(i)], lines[static_cast<size_t>(i * count / limit)]);
    }
    lines.resize(static_cast<size_t>(limit));
}

// A number that the text alone decides (Fowler, Noll, Vo: FNV-1a, 64 bits).
uint64_t HashText(std::string_view text) {
    uint64_t hash = 14695981039346656037u;
    for (const char letter : text) hash = (hash ^ static_cast<uint8_t>(letter)) * 1099511628211u;
    return hash ^ hash >> 32;
}

// What became of a line that was taken.
enum Fate { USED, IMPOSSIBLE, UNQUIET, DECIDED, FATES };

Fate SetUpSample(const LabelledLine& line, const Choice& choice, Sample& sample) {
    if (!SetUpPosition(line.Text.c_str())) return IMPOSSIBLE;
    if (!ResolveToQuiet()) return UNQUIET;
    sample.Position = board;
    if (std::abs(EvaluateSample(sample)) > choice.Decided) return DECIDED;
    sample.Result = line.Result;
    sample.Source = line.Source;
    sample.IsHeldBack = HashText(line.Text) % 100 < static_cast<uint64_t>(choice.HeldBack);
    sample.IsUsed = true;
    return USED;
}

}  // namespace

void ShareWork(const Labour& labour, const char* what, size_t count,
               const std::function<void(int, size_t, size_t, int64_t*)>& work) {
    const auto workers = static_cast<size_t>(labour.Workers);
    // A line of the cache for each, so that they don't disturb each other.
    constexpr size_t STRIDE = 8;
    const SharedArray<int64_t> done(workers * STRIDE);
    const auto tell = [&] {
        int64_t sum = 0;
        for (const int64_t part : done) sum += part;
        labour.Tell(what, count == 0 ? 1 : static_cast<double>(sum) / static_cast<double>(count));
    };
    const auto run = [&](int worker) {
        const auto i = static_cast<size_t>(worker);
        work(worker, count * i / workers, count * (i + 1) / workers, &done[i * STRIDE]);
    };
    if (!RunWorkers(labour.Workers, run, tell)) {
        throw std::runtime_error(std::string("a worker has failed while ") + what);
    }
}

std::unique_ptr<SampleSet> ReadSamples(const std::vector<std::string>& paths, const Choice& choice,
                                       const Labour& labour, ReadingReport& report) {
    std::vector<LabelledLine> lines = ReadLines(paths, report);
    ThinOut(lines, choice.Limit);
    auto samples = std::make_unique<SampleSet>(lines.size());
    const SharedArray<std::array<int64_t, FATES>> fates(static_cast<size_t>(labour.Workers));
    ShareWork(labour, "making quiet", lines.size(), [&](int worker, size_t begin, size_t end, int64_t* done) {
        auto& counts = fates[static_cast<size_t>(worker)];
        for (size_t i = begin; i < end; ++i, ++*done) ++counts[SetUpSample(lines[i], choice, (*samples)[i])];
    });
    for (const auto& counts : fates) {
        report.Impossible += counts[IMPOSSIBLE];
        report.Unquiet += counts[UNQUIET];
        report.Decided += counts[DECIDED];
    }
    return samples;
}

int EvaluateSample(const Sample& sample) {
    board = sample.Position;
    HistoryLength = 0;
    RebuildPsqSums();
    int score = 0;
    EngineSide = board.SideToMove;
    Evaluate(&score);
    return board.SideToMove == WHITE ? score : -score;
}
