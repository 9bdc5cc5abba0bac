#include "eval/weights.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "core/psqt.h"
#include "eval/materialtable.h"
#include "eval/pawnhash.h"
#include "eval/pieces.h"
#include "platform/output.h"

#define WEIGHT(type, name, meaning, ...) type name;
#include "eval/weightlist.inc"
#undef WEIGHT

unsigned EvaluationVersion = 0;
Personality Aggressivity{100, 50};
Personality Cowardice{100, 50};
Personality Tropism{100, 200};

namespace {

constexpr int MAX_ROW = 32;

struct WeightRow {
    int* Values;
    int Count;
    int Defaults[MAX_ROW];
};

// The types of the list are made of nothing but ints, so a weight can be read as an array of them.
#define WEIGHT(type, name, meaning, ...) \
    {reinterpret_cast<int*>(&name), sizeof(type) / sizeof(int), {__VA_ARGS__}},
const WeightRow WeightRows[] = {
#include "eval/weightlist.inc"
};
#undef WEIGHT

#define WEIGHT(type, name, meaning, ...) +static_cast<int>(sizeof(type) / sizeof(int))
constexpr int WEIGHT_COUNT = 0
#include "eval/weightlist.inc"
    ;
#undef WEIGHT
static_assert(WEIGHT_COUNT == 327, "the form of values.txt");

// -3 on the edge, 3 in the middle.
int CentreStep(int line) {
    return 2 * std::min(line, 7 - line) - 3;
}

// The worth of a man on the square, beyond its plain value.
int16_t PsqValue(const PsqWeights& weights, int worth, int homeRank, int file, int rank) {
    const int quarters = weights.FileCentre * CentreStep(file) + weights.RankCentre * CentreStep(rank) +
                         weights.Advance * rank + (rank == homeRank ? weights.HomeRank : 0);
    // A file of weights may hold anything; thirty-two men must fit into a 16-bit sum.
    return static_cast<int16_t>(std::clamp(worth + quarters / 4, -1000, 1000));
}

void BuildPieceSquareTables() {
    const struct {
        unsigned Piece;
        Score Worth;
        const PsqWeights &Opening, &Ending;
    } rows[] = {{PAWN, ManWorth[0], PsqPawnOpening, PsqPawnEnding},
                {KNIGHT, ManWorth[1], PsqKnightOpening, PsqKnightEnding},
                {BISHOP, ManWorth[2], PsqBishopOpening, PsqBishopEnding},
                {ROOK, ManWorth[3], PsqRookOpening, PsqRookEnding},
                {QUEEN, ManWorth[4], PsqQueenOpening, PsqQueenEnding},
                {KING, {0, 0}, PsqKingOpening, PsqKingEnding}};
    for (const auto& [piece, worth, opening, ending] : rows) {
        for (int square = 0; square < 64; ++square) {
            const int file = FileOf(square), rank = RankOf(square), home = piece == PAWN ? 1 : 0;
            const PsqEntry entry{PsqValue(opening, worth.Opening, home, file, rank),
                                 PsqValue(ending, worth.Ending, home, file, rank)};
            PsqTable[PsqIndex(piece, WHITE, square)] = entry;
            PsqTable[PsqIndex(piece, BLACK, square ^ 56)] = entry;
        }
    }
    RebuildPsqSums();
}

// Everything that follows from the weights; what was evaluated with others is forgotten.
void BuildTables() {
    BuildPieceSquareTables();
    FillMaterialTable();
    FillMobilityTables();
    ClearPawnHash();
    ++EvaluationVersion;
}

// The integers of a weights file, or nothing when it isn't one.
std::vector<int> ReadNumbers(const char* path) {
    std::vector<int> numbers;
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) return numbers;
    // A weight never needs more than four digits; the width keeps a long line from overflowing the number.
    constexpr int LIMIT = 9999;
    int number = 0;
    while (numbers.size() <= WEIGHT_COUNT && std::fscanf(file, "%8d", &number) == 1) {
        numbers.push_back(std::clamp(number, -LIMIT, LIMIT));
    }
    const bool isWhole = std::feof(file) != 0;
    std::fclose(file);
    if (!isWhole || numbers.size() != WEIGHT_COUNT) numbers.clear();
    return numbers;
}

// Nobody keeps an option from being set to anything; the products with it must stay in range.
int ScaledTo(int raw, int percent) {
    constexpr int64_t LIMIT = 100'000;
    return static_cast<int>(std::clamp(int64_t{raw} * percent / 100, -LIMIT, LIMIT));
}

}  // namespace

void SetAggressivity(int raw) {
    Aggressivity = {raw, ScaledTo(raw, 50)};
    ++EvaluationVersion;
}
void SetCowardice(int raw) {
    Cowardice = {raw, ScaledTo(raw, 50)};
    ++EvaluationVersion;
}
void SetTropism(int raw) {
    Tropism = {raw, ScaledTo(raw, 200)};
    ++EvaluationVersion;
}

void InitWeights() {
    for (const WeightRow& row : WeightRows) std::copy_n(row.Defaults, row.Count, row.Values);
    BuildTables();
}

bool LoadWeights(const char* path) {
    const std::vector<int> numbers = ReadNumbers(path);
    if (numbers.empty()) return false;
    const int* next = numbers.data();
    for (const WeightRow& row : WeightRows) {
        std::copy_n(next, row.Count, row.Values);
        next += row.Count;
    }
    BuildTables();
    return true;
}

bool WriteWeights(const char* path) {
    std::FILE* file = std::fopen(path, "w");
    if (file == nullptr) return false;
    for (const WeightRow& row : WeightRows) {
        for (int i = 0; i < row.Count; ++i) std::fprintf(file, "%d\n", row.Values[i]);
    }
    const bool isWritten = std::ferror(file) == 0;
    return std::fclose(file) == 0 && isWritten;
}

void ReloadWeights() {
    if (!LoadWeights(WEIGHTS_FILE)) {
        Print("Error loading values.txt\n");
        FlushOutput();
    }
}
