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
#include <regex>
#include <sstream>
#include <string>
#include <thread>

#include "tests/process/engine.h"

namespace {

const std::string SCRIPTS[] = {
    "xboard\nprotover 2\nlevel 40 5 0\ntime 99\neasy\ne2e4\nd2d4\nforce\ng1f3\nundo\nremove\ngo\n?\n"
    "result 1-0 {x}\nnew\nhard\nsd 3\nst 1\nd2d4\nc2c4\n.\nb1c3\nquit\n",
    "help\n\nbrd\nevl\nmvd\nbkm\negtbstat\nperft 3\nepdevl Kestrovan.ini\npgneval\nwritevalues\nreload\n"
    "clean\nreset\nfritz\nnew\nc1 2\nm3 5\nwhite\nblack\nundo\ndebug on\n",
    "edit\n#\nke1 ra1 rh1 pe7 pa2\nc\nke8 qd8 pa7 xh1\n.\nbrd\nsd 2\ngo\ne1c1\nedit\nxe1.\ngo\nmoves\n",
    "loadfen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -\nmoves\nperft 2\nsd 2\ngo\n"
    "loadfen 8/8/8/K2pP2r/8/8/8/4k3 w - d5\nmoves\ne5d6\nloadfen 8/8/8/8/8/8/8/8 b - -\ngo\nevl\n",
    "nopost\nanalyze\ne2e4\n.\ne7e5\nundo\npost\nnew\nd2d4\nbrd\nmoves\nhint\nexit\nmvd\nanalyze\nquit\n",
    "uci\nsetoption name Hash value 2\nsetoption name PawnHash value 1\nsetoption name Clear Hash\n"
    "setoption name MultiPV value 3\nsetoption name Aggressivity value 500\nisready\nucinewgame\n"
    "position startpos moves e2e4 e7e5 g1f3\ngo depth 3\nposition startpos\ngo movetime 50\nstop\nquit\n",
    "uci\nposition fen 4k3/P7/8/8/8/8/7p/4K3 w - - 0 1 moves a7a8q h2h1n\ngo infinite\nisready\n.\nstop\n"
    "go ponder wtime 90 btime 90 winc 10\nponderhit\ngo nodes 3000\ngo mate 2\ngo searchmoves e1e2\n",
    "demo\ne2e4\nxboard\ndemo\nuci\nsetoption name NalimovPath value /nowhere\nsetoption name OwnBook value "
    "false\nsetoption name OpeningsBook value x.kvb\nsetoption name NalimovCache value 2\ngo\nstop\n",
};

const std::string NUMBERS[] = {"-1", "7", "2147483647", "-2147483648", "99999999999999999999"};

std::mt19937 Random;

size_t Below(size_t limit) {
    return limit == 0 ? 0 : Random() % limit;
}

std::string RandomBytes(size_t count) {
    std::string bytes;
    // Half of the time letters and line ends, so that lines and words come about.
    const bool isText = Below(2) == 0;
    while (bytes.size() < count) {
        bytes += isText ? "\n\n .abcdefghkqrxsgot12345678"[Below(28)] : static_cast<char>(Below(256));
    }
    return bytes;
}

void Mutate(std::string& text) {
    const std::string& other = SCRIPTS[Below(std::size(SCRIPTS))];
    const size_t place = Below(text.size() + 1), line = text.rfind('\n', place) + 1;
    const size_t number = text.find_first_of("0123456789", place), from = Below(other.size());
    switch (Below(6)) {
        case 0:
            text.replace(place, Below(12), RandomBytes(Below(12)));
            break;
        case 1:
            text.insert(place, other, from, Below(8) == 0 ? std::string::npos : Below(60));
            break;
        case 2:  // a whole line
            text.insert(std::min(line, text.size()), other, other.rfind('\n', from) + 1, Below(60));
            break;
        case 3:
            text.erase(std::min(line, text.size()), text.find('\n', line) - line + 1);
            break;
        case 4:
            if (number != std::string::npos) text.replace(number, 1, NUMBERS[Below(std::size(NUMBERS))]);
            break;
        default:
            text.insert(place, Below(3000), "x 1\n"[Below(4)]);
    }
}

std::string MakeInput() {
    constexpr size_t MOST_BYTES = 6000;
    if (Below(8) == 0) return RandomBytes(1 + Below(MOST_BYTES));
    std::string text = SCRIPTS[Below(std::size(SCRIPTS))];
    for (size_t count = Below(8); count > 0; --count) Mutate(text);
    // The end of the input comes anywhere, too.
    return text.substr(0, Below(3) == 0 ? Below(text.size()) : MOST_BYTES);
}

// The line with numbers so small that no long search and no large table is asked for. What stands behind a
// point may be the first line after a board has been set up.
std::string BoundNumbers(const std::string& line) {
    using Regex = std::regex;
    static const Regex harmless("(level|loadfen|position|setoption name [adt])[^.]*", Regex::icase);
    static const Regex numbers("([A-Za-z]*)([^A-Za-z0-9]*)([0-9]+)"), clocks("[bw]?time|movetime|[bw]inc");
    if (std::regex_match(line, harmless)) return line;
    std::string bounded;
    auto rest = line.begin();
    for (std::sregex_iterator it(line.begin(), line.end(), numbers), end; it != end; ++it) {
        const std::string word = (*it)[1], digits = (*it)[3];
        const bool isSquare = !word.empty() && (*it)[2].length() == 0 && digits.size() == 1;
        const unsigned bound = std::regex_match(word, clocks) ? 100 : word == "nodes" ? 50'000 : 4;
        const unsigned long long value = std::strtoull(digits.c_str(), nullptr, 10) % bound;
        bounded.append(rest, (*it)[3].first);
        bounded += isSquare ? digits : std::to_string(value);
        rest = (*it)[3].second;
    }
    return bounded.append(rest, line.end());
}

// Runs a case; returns what is wrong with it, or nothing. `input` becomes what was sent.
std::string FindFault(const std::string& path, unsigned seed, std::string& input) {
    Random.seed(seed);
    int limitMs = 12'000;  // for what is left to do at the end of the input
    std::istringstream lines(MakeInput());
    for (std::string line; std::getline(lines, line);) {
        input += BoundNumbers(line) + (lines.eof() ? "" : "\n");
        // Moves, searches, perft.
        const size_t start = line.find_first_not_of(" .");
        if (start != std::string::npos && std::isalpha(static_cast<unsigned char>(line[start]))) {
            limitMs += 2'500;
        }
    }
    try {
        Engine engine(path);
        size_t size = 0;
        for (size_t sent = 0; sent < input.size(); sent += size) {
            size = 1 + Below(Below(3) == 0 ? input.size() : 40);
            engine.SendBytes(input.substr(sent, size));
            if (Below(6) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(Below(30)));
        }
        engine.ReadToEnd(limitMs);
        const int status = engine.WaitForExit(limitMs);
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
    const std::string path = std::filesystem::absolute(argv[1]);
    const auto firstSeed = static_cast<unsigned>(std::atoi(argv[3]));
    unsigned seed = firstSeed;
    do {
        std::string input;
        const std::string fault = FindFault(path, seed, input);
        if (fault.empty()) continue;
        const std::string file = "fuzz-" + std::to_string(seed) + ".txt";
        std::ofstream(file, std::ios::binary) << input;
        std::printf("%s\ninput saved as %s; again: %s %s 0 %u\n", fault.c_str(), file.c_str(), argv[0],
                    argv[1], seed);
        return 1;
    } while (++seed, Clock::now() < end);
    std::printf("%u cases from seed %u: no crash, no hang\n", seed - firstSeed, firstSeed);
    return 0;
}
