#pragma once

#include <string>
#include <vector>

// The test data. Whatever can't be read or understood fails the running test.

// The lines of a file under tests/data that are not empty.
std::vector<std::string> ReadDataLines(const std::string& name);

std::vector<std::string> SplitWords(const std::string& line);
std::string JoinWords(const std::vector<std::string>& words);

// A "fen" line of a data file with the lines that follow it up to the next one.
struct DataRow {
    std::string Fen;
    std::vector<std::vector<std::string>> Entries;  // key first

    // The values of an entry, empty when there is none.
    std::vector<std::string> Values(const std::string& key) const;
    std::vector<int> Numbers(const std::vector<std::string>& keys) const;
};

std::vector<DataRow> ReadDataRows(const std::string& name);
