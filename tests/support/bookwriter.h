#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Writes book files from nothing but the description of their format: it shares no code with the program.

struct WrittenMove {
    std::string Squares;    // "e2e4"; "??" and the like stand for squares that no board has
    int Good = 0, Bad = 0;  // 255, 255 for a removed move; in version 0 Good is the weight
};

class BookWriter {
  public:
    explicit BookWriter(int version = 1) : version_(version) {}

    // Enters the moves of a position. Of the FEN only placement and side are read.
    void Add(const std::string& fen, const std::vector<WrittenMove>& moves);

    // The same for a position of any key.
    void AddKey(uint32_t key1, uint32_t key2, const std::vector<WrittenMove>& moves);

    // The keys by which a book knows the position.
    static std::pair<uint32_t, uint32_t> KeyOf(const std::string& fen);

    std::string Bytes() const;

    // Where the move list of the position stands in Bytes.
    size_t ListPlace(const std::string& fen) const;

  private:
    struct Node {
        int32_t Key1, Key2;
        std::string List;
    };
    std::vector<Node> Sorted() const;

    int version_;
    std::vector<Node> nodes_;
};

// A number as a file holds it.
std::string LittleEndian(uint32_t value);
