#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The test data. Whatever can't be read or understood fails the running test.

// The lines of a file under tests/data that are not empty.
std::vector<std::string> ReadDataLines(const std::string& name);

// The words of a line.
std::vector<std::string> SplitWords(const std::string& line);

// A "fen" line of a data file with the lines that follow it up to the next one.
struct DataRow {
    std::string Fen;
    std::vector<std::vector<std::string>> Entries;  // key first

    // The values of an entry, empty when there is none.
    std::vector<std::string> Values(const std::string& key) const;
};

std::vector<DataRow> ReadDataRows(const std::string& name);

// A position with its published numbers of leaf moves, ascending by depth.
struct PerftRow {
    std::string Fen;  // with the en-passant field of the program
    struct Count {
        int Depth;
        uint64_t Leaves;
    };
    std::vector<Count> Counts;
};

std::vector<PerftRow> ReadPerftRows(const std::string& name);

// A FEN with the common en-passant field, the square behind the pawn, rewritten to name the pawn's own
// square.
std::string ConvertEnPassant(const std::string& fen);
