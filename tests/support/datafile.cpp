#include "tests/support/datafile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

std::vector<std::string> ReadDataLines(const std::string& name) {
    std::ifstream file(KESTROVAN_TEST_DATA "/" + name);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty()) lines.push_back(line);
    }
    if (lines.empty()) ADD_FAILURE() << name << " is missing or empty";
    return lines;
}

std::vector<std::string> SplitWords(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

std::vector<std::string> DataRow::Values(const std::string& key) const {
    std::vector<std::string> values;
    for (const std::vector<std::string>& entry : Entries) {
        if (entry.front() == key) values.insert(values.end(), entry.begin() + 1, entry.end());
    }
    return values;
}

std::vector<int> DataRow::Numbers(const std::vector<std::string>& keys) const {
    std::vector<int> numbers;
    for (const std::string& key : keys) {
        for (const std::string& value : Values(key)) numbers.push_back(std::stoi(value));
    }
    return numbers;
}

std::vector<DataRow> ReadDataRows(const std::string& name) {
    std::vector<DataRow> rows;
    for (const std::string& line : ReadDataLines(name)) {
        if (line.starts_with("fen ")) {
            rows.push_back({line.substr(4), {}});
        } else if (rows.empty()) {
            ADD_FAILURE() << name << ": no fen before " << line;
        } else {
            rows.back().Entries.push_back(SplitWords(line));
        }
    }
    return rows;
}
