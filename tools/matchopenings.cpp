#include "tools/matchopenings.h"

#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "book/pgnreader.h"
#include "core/fen.h"
#include "core/positionfault.h"

namespace {

// Without the rest of the line, of which nobody but EPD and FEN themselves could say what it is.
std::string FirstFields(const std::string& line) {
    std::istringstream words(line);
    std::string fen, word;
    for (int field = 0; field < 4 && words >> word; ++field) fen += word + " ";
    return fen + "0 1";
}

[[noreturn]] void Refuse(const std::string& path, int64_t line, const std::string& why) {
    throw std::runtime_error(path + ":" + std::to_string(line) + ": " + why);
}

std::vector<Opening> ReadPositions(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("can't open " + path);
    std::vector<Opening> openings;
    std::string line;
    for (int64_t number = 1; std::getline(file, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos || line[0] == '#') continue;
        openings.push_back({FirstFields(line), {}});
        LoadCommonFEN(openings.back().Fen.c_str());
        if (const char* fault = FindPositionFault())
            Refuse(path, number, std::string("illegal position: ") + fault);
    }
    return openings;
}

std::vector<Opening> ReadGames(const std::string& path, int plies) {
    std::FILE* stream = std::fopen(path.c_str(), "rb");
    if (stream == nullptr) throw std::runtime_error("can't open " + path);
    std::vector<Opening> openings;
    PgnReader reader(stream, plies);
    PgnGame game;
    PgnStatus status = PgnStatus::END;
    while ((status = reader.Next(game)) == PgnStatus::GAME) {
        openings.push_back({game.HasSetUp ? FirstFields(game.Fen) : "", game.Moves});
    }
    std::fclose(stream);
    if (status == PgnStatus::BROKEN) Refuse(path, game.FaultLine, game.Fault);
    return openings;
}

}  // namespace

std::vector<Opening> ReadOpenings(const std::string& path, int plies) {
    std::vector<Opening> openings = path.ends_with(".pgn") ? ReadGames(path, plies) : ReadPositions(path);
    if (openings.empty()) throw std::runtime_error(path + " holds no opening");
    return openings;
}

// Written out, since the library's own ways to draw numbers and to shuffle differ from system to system.
void ShuffleOpenings(std::vector<Opening>& openings, uint32_t seed) {
    std::mt19937 random(seed);
    for (size_t left = openings.size(); left > 1; --left) {
        std::swap(openings[left - 1], openings[random() % left]);
    }
}
