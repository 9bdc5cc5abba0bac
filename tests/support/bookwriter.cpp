#include "tests/support/bookwriter.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr size_t HEADER = 36, RECORD = 12;

// The two tables, drawn word by word in turns, the second one first.
struct Tables {
    uint32_t Words[2][1024];
    Tables() {
        uint32_t state = 1;
        for (int i = 0; i < 2048; ++i) {
            uint32_t word = 0;
            for (int byte = 0; byte < 4; ++byte) {
                state = state * 214013u + 2531011u;
                word = word * 256 + ((state >> 16) & 255);
            }
            Words[i % 2 == 0 ? 1 : 0][i / 2] = word;
        }
    }
};

}  // namespace

std::string LittleEndian(uint32_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i, value >>= 8) bytes += static_cast<char>(value & 255);
    return bytes;
}

std::pair<uint32_t, uint32_t> BookWriter::KeyOf(const std::string& fen) {
    static const Tables tables;
    const std::string codes = ".KNP?RBQ";
    uint32_t keys[2] = {0, 0};
    size_t file = 0, rank = 7;
    for (const char letter : fen.substr(0, fen.find(' '))) {
        if (letter == '/') {
            file = 0;
            --rank;
        } else if (std::isdigit(letter)) {
            file += static_cast<size_t>(letter - '0');
        } else {
            const size_t slot =
                codes.find(static_cast<char>(std::toupper(letter))) + (std::isupper(letter) ? 8 : 0);
            for (int i = 0; i < 2; ++i) keys[i] ^= tables.Words[i][slot * 64 + rank * 8 + file];
            ++file;
        }
    }
    if (fen[fen.find(' ') + 1] == 'b') keys[0] ^= 0x07D3ADEB;
    return {keys[0], keys[1]};
}

void BookWriter::Add(const std::string& fen, const std::vector<WrittenMove>& moves) {
    const auto [key1, key2] = KeyOf(fen);
    AddKey(key1, key2, moves);
}

void BookWriter::AddKey(uint32_t key1, uint32_t key2, const std::vector<WrittenMove>& moves) {
    std::string list(1, static_cast<char>(moves.size()));
    for (const WrittenMove& move : moves) {
        for (const size_t i : {0u, 2u}) {
            list += static_cast<char>((move.Squares[i + 1] - '1') * 8 + move.Squares[i] - 'a');
        }
        list += static_cast<char>(move.Good);
        if (version_ != 0) list += static_cast<char>(move.Bad);
    }
    nodes_.push_back({static_cast<int32_t>(key1), static_cast<int32_t>(key2), list});
}

std::vector<BookWriter::Node> BookWriter::Sorted() const {
    std::vector<Node> nodes = nodes_;
    std::sort(nodes.begin(), nodes.end(), [](const Node& a, const Node& b) {
        return std::pair(a.Key1, a.Key2) < std::pair(b.Key1, b.Key2);
    });
    return nodes;
}

std::string BookWriter::Bytes() const {
    std::string index = "~Kestrovan openings book" + LittleEndian(static_cast<uint32_t>(version_)) +
                        LittleEndian(0) + LittleEndian(static_cast<uint32_t>(nodes_.size()));
    std::string lists;
    for (const Node& node : Sorted()) {
        const size_t place = HEADER + RECORD * nodes_.size() + lists.size();
        index += LittleEndian(static_cast<uint32_t>(node.Key1)) +
                 LittleEndian(static_cast<uint32_t>(node.Key2)) + LittleEndian(static_cast<uint32_t>(place));
        lists += node.List;
    }
    return index + lists;
}

size_t BookWriter::ListPlace(const std::string& fen) const {
    const auto [key1, key2] = KeyOf(fen);
    size_t place = HEADER + RECORD * nodes_.size();
    for (const Node& node : Sorted()) {
        if (static_cast<uint32_t>(node.Key1) == key1 && static_cast<uint32_t>(node.Key2) == key2) break;
        place += node.List.size();
    }
    return place;
}
