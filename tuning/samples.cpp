#include "tuning/samples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "core/psqt.h"
#include "eval/evaluate.h"
#include "tuning/labelled.h"
#include "tuning/logistic.h"
#include "tuning/quiet.h"

namespace {

struct LabelledLine {
    std::string Text;
    float Result;  // White's points
    bool HasScore;
    int Score;  // from White's view, in centipawns
    int Source;
};

bool IsBlackToMove(const std::string& text) {
    const size_t blank = text.find_first_of(" \t", text.find_first_not_of(" \t"));
    const size_t side = text.find_first_not_of(" \t", blank);
    return side != std::string::npos && text[side] == 'b';
}

LabelledLine MakeLine(const std::string& text, double result, size_t source) {
    LabelledLine line{text, static_cast<float>(result), false, 0, static_cast<int>(source)};
    line.HasScore = ReadScore(text.c_str(), &line.Score);
    if (IsBlackToMove(text)) line.Score = -line.Score;
    return line;
}

// Puts a share of what the scores say in place of the results. What a centipawn of theirs means is found by
// logistic regression of the results (Newton's method).
void BlendScores(std::vector<LabelledLine>& lines, const Choice& choice) {
    constexpr int ITERATIONS = 20;
    double scale = 0.005;
    for (int iteration = 0; iteration < ITERATIONS; ++iteration) {
        double slope = 0, information = 1e-9;
        for (const LabelledLine& line : lines) {
            if (!line.HasScore || IsHeldBack(line.Text, choice.HeldBack)) continue;
            const double score = line.Score, expected = ExpectedPoints(scale * score);
            slope += (line.Result - expected) * score;
            information += expected * (1 - expected) * score * score;
        }
        scale = std::clamp(scale + slope / information, 0.0001, 0.1);
    }
    for (LabelledLine& line : lines) {
        if (!line.HasScore) continue;
        const double expected = ExpectedPoints(scale * line.Score);
        line.Result = static_cast<float>((1 - choice.Scores) * line.Result + choice.Scores * expected);
    }
}

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
                lines.push_back(MakeLine(text, result, source));
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
    sample.IsHeldBack = IsHeldBack(line.Text, choice.HeldBack);
    sample.IsUsed = true;
    return USED;
}

}  // namespace

bool IsHeldBack(std::string_view line, int percent) {
    constexpr std::string_view ID = " id \"";
    const size_t id = line.find(ID);
    if (id != std::string_view::npos) line = line.substr(id, line.find('"', id + ID.size()) - id);
    return HashText(line) % 100 < static_cast<uint64_t>(percent);
}

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
    if (choice.Scores > 0) BlendScores(lines, choice);
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
