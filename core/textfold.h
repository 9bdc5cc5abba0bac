#pragma once

#include <array>

// Case folding of ASCII letters, the same whatever the locale: every byte maps to itself except "A".."Z".

constexpr std::array<unsigned char, 256> BuildFoldTable() {
    std::array<unsigned char, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        const bool isCapital = byte >= 'A' && byte <= 'Z';
        table[byte] = static_cast<unsigned char>(isCapital ? byte - 'A' + 'a' : byte);
    }
    return table;
}

inline constexpr std::array<unsigned char, 256> FoldTable = BuildFoldTable();

constexpr char FoldCase(char letter) {
    return static_cast<char>(FoldTable[static_cast<unsigned char>(letter)]);
}
