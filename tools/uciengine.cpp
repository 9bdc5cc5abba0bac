#include "tools/uciengine.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "core/textnumber.h"
#include "platform/platform.h"

namespace {

constexpr size_t GREETING_LINES = 1000;
constexpr size_t LAST_LINES = 10;
constexpr int QUIT_MS = 1000;
constexpr int MATE_SCORE = 30000;  // centipawns; no score counts for more

// The score of a line of thought, if it tells one of the best line.
std::optional<int> ReadScore(const std::string& line) {
    std::istringstream words(line);
    std::string word, unit, value;
    std::optional<int> score;
    if (!(words >> word) || word != "info") return score;
    while (words >> word) {
        if (word == "string" || word == "pv") break;
        if (word == "multipv" && words >> value && value != "1") return std::nullopt;
        if (word == "score" && words >> unit >> value) {
            const int number = ReadNumber(value.c_str());
            const bool isMate = unit == "mate", isLost = number <= 0;
            score = isMate ? isLost ? -MATE_SCORE : MATE_SCORE : std::clamp(number, -MATE_SCORE, MATE_SCORE);
        }
    }
    return score;
}

bool BeginsLike(const std::string& line, const std::string& beginning) {
    const auto isSame = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
    return line.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), line.begin(), isSame);
}

}  // namespace

void UciEngine::Ask(const std::vector<std::string>& lines) {
    asked_ = lines;
    answers_.clear();
    for (const std::string& line : lines) process_.Send(line);
}

std::string UciEngine::ReadLine(int64_t deadlineMs, Fault late) {
    std::string line;
    switch (process_.ReadLine(line, deadlineMs)) {
        case ChildProcess::Reading::LINE:
            break;
        case ChildProcess::Reading::SILENCE:
            throw EngineFault(late, late == Fault::FLAG ? "oversteps its time" : "gives no answer in time");
        case ChildProcess::Reading::END:
            throw EngineFault(Fault::CRASH, process_.End(QUIT_MS));
        case ChildProcess::Reading::INTERRUPTED:
            throw MatchInterrupted();
    }
    answers_.push_back(line);
    if (answers_.size() > LAST_LINES) answers_.pop_front();
    return line;
}

void UciEngine::ReadUntil(const char* answer) {
    const int64_t deadline = ClockMs() + setup_.TimeoutMs;
    while (ReadLine(deadline) != answer) {
    }
}

void UciEngine::Greet() {
    Ask({"uci"});
    const int64_t deadline = ClockMs() + setup_.TimeoutMs;
    for (std::string line; (line = ReadLine(deadline)) != "uciok";) {
        if (greeting_.size() < GREETING_LINES) greeting_.push_back(line);
    }
}

std::string UciEngine::Name() const {
    for (const std::string& line : greeting_) {
        if (line.starts_with("id name ")) return line.substr(8);
    }
    return "nameless";
}

bool UciEngine::HasSaid(const std::string& beginning) const {
    return std::any_of(greeting_.begin(), greeting_.end(),
                       [&](const std::string& line) { return BeginsLike(line, beginning); });
}

void UciEngine::BeginGame() {
    std::vector<std::string> lines;
    for (const auto& [name, value] : setup_.Options)
        lines.push_back("setoption name " + name + " value " + value);
    lines.insert(lines.end(), {"ucinewgame", "isready"});
    Ask(lines);
    ReadUntil("readyok");
}

UciEngine::Answer UciEngine::Think(const std::string& position, const std::string& go,
                                   std::optional<int64_t> clockMs) {
    const Fault late = clockMs ? Fault::FLAG : Fault::SILENCE;
    const int64_t start = ClockMs(), deadline = start + clockMs.value_or(setup_.TimeoutMs);
    Answer answer;
    Ask({position, go});
    std::string line;
    while (!(line = ReadLine(deadline, late)).starts_with("bestmove")) {
        if (const auto score = ReadScore(line)) answer.Score = score;
    }
    answer.UsedMs = ClockMs() - start;
    std::istringstream words(line);
    words >> answer.Move >> answer.Move;
    return answer;
}

void UciEngine::Quit() {
    process_.Send("quit");
    process_.End(QUIT_MS);
}

std::string UciEngine::LastLines() const {
    std::string text;
    for (const std::string& line : asked_) text += "  > " + line + "\n";
    for (const std::string& line : answers_) text += "  < " + line + "\n";
    return text;
}
