#include "eval/weights.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <system_error>
#include <type_traits>
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
    const char* Name;
    const char* Meaning;
    bool HasPhases;  // opening and ending by turns
    int* Values;
    int Count;
    int Defaults[MAX_ROW];
};

template <typename Type>
constexpr bool HAS_PHASES = std::is_same_v<Type, Score>;
template <size_t length>
constexpr bool HAS_PHASES<std::array<Score, length>> = true;

// The types of the list are made of nothing but ints, so a weight can be read as an array of them.
#define WEIGHT(type, name, meaning, ...)                                                                 \
    {#name,        meaning, HAS_PHASES<type>, reinterpret_cast<int*>(&name), sizeof(type) / sizeof(int), \
     {__VA_ARGS__}},
const WeightRow WeightRows[] = {
#include "eval/weightlist.inc"
};
#undef WEIGHT

#define WEIGHT(type, name, meaning, ...) +static_cast<int>(sizeof(type) / sizeof(int))
static_assert(WEIGHT_COUNT == 0
#include "eval/weightlist.inc"
);
#undef WEIGHT

// The row that a place of the whole list falls into, and the place within that row.
struct RowPlace {
    const WeightRow& Row;
    int Index;
};
RowPlace FindRow(int place) {
    const WeightRow* row = WeightRows;
    for (; place >= row->Count; ++row) place -= row->Count;
    return {*row, place};
}

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
    SetWeights(DefaultWeights());
}

WeightValues DefaultWeights() {
    WeightValues values;
    int* next = values.data();
    for (const WeightRow& row : WeightRows) next = std::copy_n(row.Defaults, row.Count, next);
    return values;
}

WeightValues CurrentWeights() {
    WeightValues values;
    int* next = values.data();
    for (const WeightRow& row : WeightRows) next = std::copy_n(row.Values, row.Count, next);
    return values;
}

void SetWeights(const WeightValues& values) {
    const int* next = values.data();
    for (const WeightRow& row : WeightRows) {
        for (int i = 0; i < row.Count; ++i)
            row.Values[i] = std::clamp(*next++, -LARGEST_WEIGHT, LARGEST_WEIGHT);
    }
    BuildTables();
}

std::string WeightName(int place) {
    const auto& [row, index] = FindRow(place);
    const int phases = row.HasPhases ? 2 : 1;
    std::string name = row.Name;
    if (row.Count > phases) name += '[' + std::to_string(index / phases) + ']';
    if (row.HasPhases) name += index % 2 == 0 ? ".Opening" : ".Ending";
    return name;
}

const char* WeightMeaning(int place) {
    return FindRow(place).Row.Meaning;
}

bool IsWeightOf(int place, const std::string& name) {
    const std::string whole = WeightName(place), rest = whole.substr(std::min(name.size(), whole.size()));
    return whole == name + rest && (rest.empty() || rest[0] == '[' || rest[0] == '.');
}

bool ReadWeights(const char* path, WeightValues* values) {
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) return false;
    std::vector<int> numbers;
    // A number that fills the buffer is too long to be one.
    char word[16];
    bool areNumbers = true;
    while (areNumbers && numbers.size() <= WEIGHT_COUNT && std::fscanf(file, "%15s", word) == 1) {
        const char* const begin = word + (word[0] == '+' ? 1 : 0);
        const char* const end = word + std::strlen(word);
        int number = 0;
        const auto [stop, error] = std::from_chars(begin, end, number);
        areNumbers = stop == end && error == std::errc() && end - word < 15;
        numbers.push_back(number);
    }
    const bool isWhole = areNumbers && std::feof(file) != 0 && numbers.size() == WEIGHT_COUNT;
    std::fclose(file);
    if (isWhole) std::copy(numbers.begin(), numbers.end(), values->begin());
    return isWhole;
}

bool LoadWeights(const char* path) {
    WeightValues values;
    if (!ReadWeights(path, &values)) return false;
    SetWeights(values);
    return true;
}

bool WriteWeights(const char* path) {
    return WriteWeights(path, CurrentWeights());
}

bool WriteWeights(const char* path, const WeightValues& values) {
    std::FILE* file = std::fopen(path, "w");
    if (file == nullptr) return false;
    for (const int value : values) std::fprintf(file, "%d\n", value);
    const bool isWritten = std::ferror(file) == 0;
    return std::fclose(file) == 0 && isWritten;
}

void ReloadWeights() {
    if (!LoadWeights(WEIGHTS_FILE)) {
        Print("Error loading values.txt\n");
        FlushOutput();
    }
}
