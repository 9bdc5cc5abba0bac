#include "eval/weights.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "core/psqt.h"
#include "platform/output.h"

PsqWeights PsqParameters[8][2];
int EndingUnits;
int EndingUnitsNoQueen;
Personality Aggressivity;
Personality Cowardice;
Personality Tropism;

namespace {

struct WeightRow {
    int* Value;
    int Default;
    const char* Name;
};

#define PSQ_ROWS(piece, phase, name, file, rank, advance, home)                   \
    {&PsqParameters[piece][phase].FileCentre, file, "Psq" name "FileCentre"},     \
        {&PsqParameters[piece][phase].RankCentre, rank, "Psq" name "RankCentre"}, \
        {&PsqParameters[piece][phase].Advance, advance, "Psq" name "Advance"}, {  \
        &PsqParameters[piece][phase].HomeRank, home, "Psq" name "HomeRank"        \
    }

const WeightRow WeightTable[] = {
    PSQ_ROWS(PAWN, 0, "PawnOpening", 8, 4, 8, 0),
    PSQ_ROWS(PAWN, 1, "PawnEnding", -4, 0, 28, 0),
    PSQ_ROWS(KNIGHT, 0, "KnightOpening", 20, 14, 12, -16),
    PSQ_ROWS(KNIGHT, 1, "KnightEnding", 16, 16, 4, -8),
    PSQ_ROWS(BISHOP, 0, "BishopOpening", 10, 10, 4, -32),
    PSQ_ROWS(BISHOP, 1, "BishopEnding", 8, 8, 0, 0),
    PSQ_ROWS(ROOK, 0, "RookOpening", 12, 0, 4, 0),
    PSQ_ROWS(ROOK, 1, "RookEnding", 0, 0, 8, 0),
    PSQ_ROWS(QUEEN, 0, "QueenOpening", 4, 4, 0, -8),
    PSQ_ROWS(QUEEN, 1, "QueenEnding", 12, 12, 4, 0),
    PSQ_ROWS(KING, 0, "KingOpening", -28, 0, -48, 24),
    PSQ_ROWS(KING, 1, "KingEnding", 24, 24, 8, 0),
    {&EndingUnits, 9, "EndingUnits"},
    {&EndingUnitsNoQueen, 14, "EndingUnitsNoQueen"},
};

#undef PSQ_ROWS

// -3 on the edge, 3 in the middle.
int CentreStep(int line) {
    return 2 * std::min(line, 7 - line) - 3;
}

int16_t PsqValue(const PsqWeights& weights, int file, int rank) {
    const int quarters = weights.FileCentre * CentreStep(file) + weights.RankCentre * CentreStep(rank) +
                         weights.Advance * rank + (rank == 0 ? weights.HomeRank : 0);
    // A file of weights may hold anything; thirty-two men must fit into a 16-bit sum.
    return static_cast<int16_t>(std::clamp(quarters / 4, -1000, 1000));
}

void BuildTables() {
    for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
        for (int square = 0; square < 64; ++square) {
            const int file = FileOf(square), rank = RankOf(square);
            const PsqEntry entry{PsqValue(PsqParameters[piece][0], file, rank),
                                 PsqValue(PsqParameters[piece][1], file, rank)};
            PsqTable[PsqIndex(piece, WHITE, square)] = entry;
            PsqTable[PsqIndex(piece, BLACK, square ^ 56)] = entry;
        }
    }
    RebuildPsqSums();
}

// The integers of a weights file, or nothing when it isn't one.
std::vector<int> ReadNumbers(const char* path) {
    std::vector<int> numbers;
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) return numbers;
    // A weight never needs more than five digits; the width keeps a long line from overflowing the number.
    constexpr int LIMIT = 99999;
    int number = 0;
    while (numbers.size() <= std::size(WeightTable) && std::fscanf(file, "%8d", &number) == 1) {
        numbers.push_back(std::clamp(number, -LIMIT, LIMIT));
    }
    const bool isWhole = std::feof(file) != 0;
    std::fclose(file);
    if (!isWhole || numbers.size() != std::size(WeightTable)) numbers.clear();
    return numbers;
}

}  // namespace

void SetAggressivity(int raw) {
    Aggressivity = {raw, static_cast<int>(raw * 50LL / 100)};
}
void SetCowardice(int raw) {
    Cowardice = {raw, static_cast<int>(raw * 50LL / 100)};
}
void SetTropism(int raw) {
    Tropism = {raw, static_cast<int>(raw * 200LL / 100)};
}

void InitWeights() {
    for (const WeightRow& row : WeightTable) *row.Value = row.Default;
    BuildTables();
}

bool LoadWeights(const char* path) {
    const std::vector<int> numbers = ReadNumbers(path);
    if (numbers.empty()) return false;
    for (size_t i = 0; i < numbers.size(); ++i) *WeightTable[i].Value = numbers[i];
    BuildTables();
    return true;
}

bool WriteWeights(const char* path) {
    std::FILE* file = std::fopen(path, "w");
    if (file == nullptr) return false;
    for (const WeightRow& row : WeightTable) std::fprintf(file, "%d\n", *row.Value);
    const bool isWritten = std::ferror(file) == 0;
    return std::fclose(file) == 0 && isWritten;
}

void ReloadWeights() {
    InitWeights();
    if (!LoadWeights(WEIGHTS_FILE)) {
        Print("Error loading values.txt\n");
        FlushOutput();
    }
}
