#include "tests/support/datafile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

std::vector<std::string> ReadDataLines(const std::string& name) {
    std::ifstream file(std::string(KESTROVAN_TEST_DATA "/") + name);
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

std::vector<std::string> DataRow::Values(const std::string& key) const {
    std::vector<std::string> values;
    for (const std::vector<std::string>& entry : Entries) {
        if (entry.front() == key) values.insert(values.end(), entry.begin() + 1, entry.end());
    }
    return values;
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

std::string ConvertEnPassant(const std::string& fen) {
    std::vector<std::string> fields = SplitWords(fen);
    if (fields.size() < 4) {
        ADD_FAILURE() << "not a FEN: " << fen;
        return fen;
    }
    std::string& square = fields[3];
    if (square.size() == 2 && square[1] == '6') square[1] = '5';
    if (square.size() == 2 && square[1] == '3') square[1] = '4';
    std::string text;
    for (const std::string& field : fields) text += (text.empty() ? "" : " ") + field;
    return text;
}

namespace {

// Reads "D<depth> <leaves>"; false for anything else.
bool ReadCount(const std::string& text, PerftRow::Count& count) {
    const std::vector<std::string> words = SplitWords(text);
    if (words.size() != 2 || words[0].front() != 'D') return false;
    const auto isNumber = [](const std::string& word, size_t from) {
        return word.size() > from && word.find_first_not_of("0123456789", from) == std::string::npos;
    };
    if (!isNumber(words[0], 1) || !isNumber(words[1], 0)) return false;
    count = {std::stoi(words[0].substr(1)), std::stoull(words[1])};
    return true;
}

}  // namespace

std::vector<PerftRow> ReadPerftRows(const std::string& name) {
    std::vector<PerftRow> rows;
    for (const std::string& line : ReadDataLines(name)) {
        std::istringstream fields(line);
        std::string field;
        std::getline(fields, field, ';');
        PerftRow row{ConvertEnPassant(field), {}};
        while (std::getline(fields, field, ';')) {
            PerftRow::Count count{};
            if (!ReadCount(field, count)) ADD_FAILURE() << name << ": can't read" << field << " in " << line;
            row.Counts.push_back(count);
        }
        if (row.Counts.empty()) ADD_FAILURE() << name << ": no numbers in " << line;
        rows.push_back(row);
    }
    return rows;
}
