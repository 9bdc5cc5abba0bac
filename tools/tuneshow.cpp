#include "tools/tuneshow.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

int At(const WeightValues& weights, int place) {
    return weights[static_cast<size_t>(place)];
}

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) throw std::runtime_error("can't read " + path);
    return text;
}

// The part of the list's text that holds the numbers of the row at `begin`: from behind the comma that
// follows the meaning to the closing bracket. Throws when it isn't there.
struct TextPart {
    size_t Begin, End;
};
TextPart FindNumbers(const std::string& text, size_t begin) {
    const size_t quote = text.find('"', begin);
    const size_t comma = quote == std::string::npos ? quote : text.find("\",", quote + 1);
    const size_t end = comma == std::string::npos ? comma : text.find(')', comma);
    if (end == std::string::npos) throw std::runtime_error("a row of the list has no numbers");
    return {comma + 2, end};
}

}  // namespace

WeightValues StartWeights(const std::string& path) {
    WeightValues weights = DefaultWeights();
    if (!path.empty() && !ReadWeights(path.c_str(), &weights)) {
        throw std::runtime_error(path + " is no file of " + std::to_string(WEIGHT_COUNT) + " weights");
    }
    return weights;
}

void ListWeights(const std::string& path) {
    const WeightValues weights = StartWeights(path);
    for (int place = 0; place < WEIGHT_COUNT; ++place) {
        std::printf("%3d  %-36s %6d  %s\n", place + 1, WeightName(place).c_str(), At(weights, place),
                    WeightMeaning(place));
    }
}

void CompareWeights(const std::string& first, const std::string& second) {
    const WeightValues before = StartWeights(first), after = StartWeights(second);
    for (int place = 0; place < WEIGHT_COUNT; ++place) {
        if (At(before, place) == At(after, place)) continue;
        std::printf("%3d  %-36s %6d -> %6d  %s\n", place + 1, WeightName(place).c_str(), At(before, place),
                    At(after, place), WeightMeaning(place));
    }
}

void MixWeights(const std::string& start, const std::vector<std::string>& targets,
                const std::string& output) {
    constexpr double MOST = 100;  // keeps the sums within numbers
    const WeightValues from = StartWeights(start);
    std::vector<double> sums(from.begin(), from.end());
    for (const std::string& target : targets) {
        const size_t colon = target.rfind(':');
        char* end = nullptr;
        const double share = colon == std::string::npos ? 0 : std::strtod(target.c_str() + colon + 1, &end);
        if (end == nullptr || *end != '\0' || colon + 1 == target.size() || colon == 0 ||
            !(std::abs(share) <= MOST)) {
            throw std::runtime_error(target + " is not FILE:SHARE");
        }
        const WeightValues to = StartWeights(target.substr(0, colon));
        for (size_t i = 0; i < WEIGHT_COUNT; ++i) sums[i] += share * (to[i] - from[i]);
    }
    WeightValues mixed;
    std::transform(sums.begin(), sums.end(), mixed.begin(), [](double sum) {
        return static_cast<int>(std::lround(std::clamp<double>(sum, -LARGEST_WEIGHT, LARGEST_WEIGHT)));
    });
    if (!WriteWeights(output.c_str(), mixed)) throw std::runtime_error("can't write " + output);
}

void AdoptWeights(const std::string& path, const std::string& listPath) {
    constexpr char ROW[] = "\nWEIGHT(";
    const WeightValues weights = StartWeights(path);
    std::string text = ReadText(listPath);
    size_t row = 0;
    int place = 0;
    for (; (row = text.find(ROW, row)) != std::string::npos; row += sizeof ROW) {
        const auto [begin, end] = FindNumbers(text, row);
        const auto commas = std::count(text.begin() + static_cast<ptrdiff_t>(begin),
                                       text.begin() + static_cast<ptrdiff_t>(end), ',');
        const int next = place + static_cast<int>(commas) + 1;
        if (next > WEIGHT_COUNT) throw std::runtime_error(listPath + " is not the list of these weights");
        std::string numbers;
        while (place < next) {
            numbers.append(numbers.empty() ? " " : ", ").append(std::to_string(At(weights, place++)));
        }
        text.replace(begin, end - begin, numbers);
    }
    if (place != WEIGHT_COUNT) throw std::runtime_error(listPath + " is not the list of these weights");
    std::ofstream file(listPath, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("can't write " + listPath);
}

void ExplainFindings(std::vector<WeightFinding> findings, const WeightValues& start,
                     const WeightValues& tuned) {
    constexpr size_t MOST = 40;
    std::stable_sort(findings.begin(), findings.end(),
                     [](const WeightFinding& a, const WeightFinding& b) { return a.Effect > b.Effect; });
    std::printf(
        "\nWhat moved most; the effect is the root mean square of what the move does to all positions, "
        "in centipawns:\n");
    std::printf("%-36s %6s    %6s %8s %8s %7s\n", "weight", "from", "to", "+-", "touches", "effect");
    for (size_t i = 0; i < std::min(MOST, findings.size()) && findings[i].Effect > 0; ++i) {
        const WeightFinding& finding = findings[i];
        std::printf("%-36s %6d -> %6d %8.1f %6.1f %% %7.2f\n", WeightName(finding.Place).c_str(),
                    At(start, finding.Place), At(tuned, finding.Place), finding.Deviation,
                    finding.Touched * 100, finding.Effect);
    }
    std::printf("\nWhat the positions say little about; these stay near their start:\n");
    std::stable_sort(findings.begin(), findings.end(), [](const WeightFinding& a, const WeightFinding& b) {
        return a.Knowledge < b.Knowledge;
    });
    for (const WeightFinding& finding : findings) {
        if (finding.Knowledge >= 1) break;
        std::printf("%-36s %6d -> %6d %8.1f %7.3f %%\n", WeightName(finding.Place).c_str(),
                    At(start, finding.Place), At(tuned, finding.Place), finding.Deviation,
                    finding.Touched * 100);
    }
}
