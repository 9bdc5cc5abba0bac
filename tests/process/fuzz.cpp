// Feeds engines with random bytes and damaged sessions and looks for crashes and hangs.
//
//     kestrovan_fuzz <engine> <seconds> <seed>
//
// Each case is a process of its own with a seed of its own, counted up from the first; 0 seconds run one.

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/process/engine.h"

namespace {

const std::vector<std::string> SCRIPTS = {
    "xboard\nprotover 2\nnew\nlevel 40 5 0\ntime 200\notim 200\neasy\ne2e4\ntime 190\nd2d4\nforce\ng1f3\n"
    "undo\nremove\ngo\n?\nresult 1-0 {x}\nnew\nhard\nsd 3\nd2d4\nc2c4\n.\nquit\n",
    "help\n\nbrd\nmoves\nevl\nmvd\nbkm\negtbstat\nperft 3\nepdevl Kestrovan.ini\npgneval\nwritevalues\n"
    "reload\nclean\nreset\nfritz\nnew\nc1 2\nm3 5\nwhite\nblack\nundo\ndebug on\n",
    "sd 3\nforce\ne2e4\ne7e5\nf1c4\nb8c6\nd1h5\ng8f6\ngo\nh5f7\nundo\nst 1\ngo\nremove\nhard\ngo\nb1c3\n",
    "edit\n#\nke1 ra1 rh1 pe7 pa2\nc\nke8 qd8 pa7 xh1\n.\nbrd\nmoves\nsd "
    "2\ngo\ne1c1\nedit\nxe1.\ngo\nmoves\n",
    "loadfen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -\nmoves\nperft 2\nsd 2\ngo\n"
    "loadfen 8/8/8/K2pP2r/8/8/8/4k3 w - d5\nmoves\ne5d6\nloadfen 8/8/8/8/8/8/8/8 b - -\ngo\nevl\n",
    "nopost\nanalyze\ne2e4\n.\ne7e5\nundo\npost\nnew\nd2d4\nbrd\nmoves\nhint\nexit\nmvd\nanalyze\nquit\n",
    "sd 4\ne2e4\n.\ng1f3\n?\nundo\nhard\nd2d4\neasy\nresult *\nforce\nisready\nnew\npost\nnopost\ntime 50\n",
    "uci\nsetoption name Hash value 2\nsetoption name PawnHash value 1\nsetoption name Clear Hash\n"
    "setoption name MultiPV value 3\nsetoption name Aggressivity value 500\nisready\nucinewgame\n"
    "position startpos moves e2e4 e7e5 g1f3\ngo depth 3\nposition startpos\ngo movetime 50\nstop\nquit\n",
    "uci\nposition fen 4k3/P7/8/8/8/8/7p/4K3 w - - 0 1 moves a7a8q h2h1n\ngo infinite\nisready\n.\nstop\n"
    "go ponder wtime 300 btime 300 winc 10 binc 10\nponderhit\ngo nodes 3000\ngo mate 2\ngo searchmoves "
    "e1e2\n",
    "uci\nposition startpos\ngo ponder\nstop\ngo wtime 500 btime 500 movestogo 5\ngo infinite\nquit\n",
    "demo\ne2e4\nxboard\ndemo\nuci\nsetoption name NalimovPath value /nowhere\nsetoption name OwnBook value "
    "false\nsetoption name OpeningsBook value x.kvb\nsetoption name NalimovCache value 2\ngo\nstop\n",
};

const char* const NUMBERS[] = {"0",    "-1", "1", "7", "2147483647", "-2147483648", "99999999999999999999",
                               "65536"};

class Case {
  public:
    explicit Case(unsigned seed) : random_(seed) {}

    size_t Below(size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    std::string MakeInput() {
        constexpr size_t MOST_BYTES = 6000;
        if (Below(8) == 0) return RandomBytes(1 + Below(MOST_BYTES));
        std::string text = SCRIPTS[Below(SCRIPTS.size())];
        for (size_t count = Below(8); count > 0; --count) Mutate(text);
        if (text.size() > MOST_BYTES) text.resize(MOST_BYTES);
        return text;
    }

  private:
    std::string RandomBytes(size_t count) {
        std::string bytes;
        // Some of it in letters and line ends, so that lines and words come about.
        const bool isText = Below(2) == 0;
        for (size_t i = 0; i < count; ++i) {
            bytes += isText ? "\n\n .abcdefghkqrxsgot12345678"[Below(27)] : static_cast<char>(Below(256));
        }
        return bytes;
    }

    void Mutate(std::string& text) {
        const std::string& other = SCRIPTS[Below(SCRIPTS.size())];
        const size_t place = Below(text.size() + 1), length = Below(12);
        switch (Below(10)) {
            case 0:
                text.erase(place, length);
                break;
            case 1:
                text.insert(place, RandomBytes(length));
                break;
            case 2:
                text.insert(place, text.substr(Below(text.size()), Below(60)));
                break;
            case 3:
                text.insert(place, other.substr(Below(other.size()), Below(60)));
                break;
            case 4:
                text += other;
                break;
            case 5:
                text.insert(StartOfLine(text, place), LineOf(other));
                break;
            case 6:
                text.erase(StartOfLine(text, place), LineOf(text).size());
                break;
            case 7:
                ReplaceNumber(text, place);
                break;
            case 8:
                if (place < text.size()) text[place] = static_cast<char>(Below(256));
                break;
            default:
                text.insert(place, std::string(Below(3000), "x 1\n"[Below(4)]));
        }
    }

    static size_t StartOfLine(const std::string& text, size_t place) {
        const size_t end = text.rfind('\n', place);
        return end == std::string::npos ? 0 : end + 1 <= text.size() ? end + 1 : end;
    }

    std::string LineOf(const std::string& text) {
        const size_t start = StartOfLine(text, Below(text.size() + 1));
        return text.substr(start, text.find('\n', start) - start + 1);
    }

    void ReplaceNumber(std::string& text, size_t place) {
        const size_t start = text.find_first_of("0123456789", place);
        if (start == std::string::npos) return;
        const size_t end = text.find_first_not_of("0123456789", start);
        text.replace(start, end - start, NUMBERS[Below(std::size(NUMBERS))]);
    }

    std::mt19937 random_;
};

std::string Fold(std::string text) {
    for (char& letter : text) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return text;
}

// Whether one is a beginning of the other, as the program matches its words.
bool Matches(std::string_view word, std::string_view keyword) {
    return !word.empty() && (word.starts_with(keyword) || keyword.starts_with(word));
}

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words(1);
    for (const char letter : Fold(line)) {
        if (letter != ' ') {
            words.back() += letter;
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    return words;
}

// The bound of the numbers of a line, so that no long search is asked for; 0 for none. `word` is the one
// before the number, `option` the third.
unsigned NumberBound(const std::vector<std::string>& words, const std::string& word, bool hasDot) {
    const std::string& first = words.front();
    if (Matches(first, "setoption")) {
        const bool isHarmless =
            words.size() > 2 && std::string("adtm").find(words[2][0]) != std::string::npos;
        return isHarmless && !hasDot ? 0 : 8;  // tables of a few megabytes
    }
    for (const char* harmless : {"level", "loadfen", "position"}) {
        if (Matches(first, harmless) && first.size() > 2 && !hasDot) return 0;
    }
    if (Matches(first, "go") && !hasDot) {
        for (const char* keyword : {"depth", "mate"}) {
            if (Matches(word, keyword)) return 4;
        }
        for (const char* keyword : {"btime", "wtime", "binc", "winc", "movetime"}) {
            if (Matches(word, keyword)) return 500;
        }
        return Matches(word, "nodes") ? 50000 : 4;
    }
    if (Matches(first, "time")) return 100;
    return Matches(first, "st") ? 2 : 4;
}

std::string BoundNumbers(const std::string& line) {
    const std::vector<std::string> words = Words(line);
    const bool hasDot = line.find('.') != std::string::npos;
    std::string bounded, word, before;
    for (size_t i = 0; i < line.size();) {
        const size_t start = i;
        while (i < line.size() && std::isdigit(static_cast<unsigned char>(line[i]))) ++i;
        const bool isSquare =
            i == start + 1 && start > 0 && std::isalpha(static_cast<unsigned char>(line[start - 1]));
        if (i > start && !isSquare) {
            const unsigned bound = NumberBound(words, word.empty() ? before : word, hasDot);
            const std::string digits = line.substr(start, i - start);
            bounded +=
                bound == 0 ? digits : std::to_string(std::strtoull(digits.c_str(), nullptr, 10) % bound);
            continue;
        }
        if (i == start) ++i;
        if (line[start] == ' ') {
            if (!word.empty()) before = word;
            word.clear();
        } else if (!isSquare) {
            word += Fold(line.substr(start, 1));
        }
        bounded.append(line, start, i - start);
    }
    return bounded;
}

std::string BoundAllNumbers(const std::string& text) {
    std::string bounded;
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size() - 1) + 1;
        bounded += BoundNumbers(text.substr(start, end - start));
        start = end;
    }
    return bounded;
}

// What the searches of the input may take behind its end, and ten seconds.
int EndLimitMs(const std::string& input) {
    constexpr int BASE_MS = 10'000, LINE_MS = 2'000;
    int count = 0;
    std::istringstream lines(input);
    for (std::string line; std::getline(lines, line);) {
        const size_t start = line.find_first_not_of(" .");
        // Moves, searches, perft.
        if (start != std::string::npos &&
            std::string("abcdefghpABCDEFGHP").find(line[start]) != std::string::npos) {
            ++count;
        }
    }
    return BASE_MS + LINE_MS * count;
}

// The exit status, which must be 0.
int RunCase(const std::string& path, Case& random, const std::string& input) {
    Engine engine(path);
    for (size_t sent = 0; sent < input.size();) {
        const size_t size = random.Below(3) == 0 ? 1 + random.Below(input.size()) : 1 + random.Below(40);
        engine.SendBytes(input.substr(sent, size));
        sent += size;
        if (random.Below(6) == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(random.Below(30)));
        }
    }
    const int limit = EndLimitMs(input);
    engine.ReadToEnd(limit);
    return engine.WaitForExit(limit);
}

// What is wrong, or nothing.
std::string FindFault(const std::string& path, Case& random, const std::string& input) {
    try {
        const int status = RunCase(path, random, input);
        return status == 0 ? "" : "exit status " + std::to_string(status);
    } catch (const std::exception& fault) {
        return std::string(fault.what()).substr(0, 300);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <engine> <seconds> <seed>\n", argv[0]);
        return 2;
    }
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(std::atoi(argv[2]));
    const auto firstSeed = static_cast<unsigned>(std::atoi(argv[3]));
    const std::string path = std::filesystem::absolute(argv[1]);
    unsigned count = 0;
    do {
        const unsigned seed = firstSeed + count++;
        Case random(seed);
        const std::string input = BoundAllNumbers(random.MakeInput());
        const std::string fault = FindFault(path, random, input);
        if (fault.empty()) continue;
        const std::string file = "fuzz-" + std::to_string(seed) + ".txt";
        std::ofstream(file, std::ios::binary) << input;
        std::printf("%s\ninput saved as %s; again: %s %s 0 %u\n", fault.c_str(), file.c_str(), argv[0],
                    argv[1], seed);
        return 1;
    } while (Clock::now() < end);
    std::printf("%u cases from seed %u: no crash, no hang\n", count, firstSeed);
    return 0;
}
