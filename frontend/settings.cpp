#include "frontend/settings.h"

#include <cstdio>
#include <cstring>

#include "book/bookfile.h"
#include "book/booksettings.h"
#include "core/textnumber.h"
#include "egtb/tablebases.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "frontend/resign.h"
#include "frontend/tokens.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

constexpr char FILE_NAME[] = "Kestrovan.ini";
constexpr int LINE_BUFFER = 250;  // longer lines are read as several
constexpr int DEFAULT_HASH_ENTRIES = 524288;
constexpr int START_PAWN_ENTRIES = 262144;
// Differs on purpose from the table that start-up makes.
constexpr int FALLBACK_PAWN_ENTRIES = 524288;
constexpr int DEFAULT_CACHE_BYTES = MEGABYTE;

// A line of the file that has matched a key.
struct SettingLine {
    int Number;         // from 1
    const char* Value;  // token 1
    const char* Rest;   // the line from token 1 on
};

void Warn(const SettingLine& line, const char* text) {
    Print("Kestrovan.ini(%d) WARNING: %s\n", line.Number, text);
    FlushOutput();
}

bool IsWithin(int value, int low, int high) {
    return value >= low && value <= high;
}

// A table size that is named by a number within a range.
struct SizeSetting {
    int* Setting;
    int Low, High;
    int (*Convert)(int value);  // called for values within the range only
    int Fallback;               // for values outside
    const char* Name;
};

int PowerOfTwo(int exponent) {
    return 1 << exponent;
}
int MegabytesToBytes(int megabytes) {
    return megabytes * MEGABYTE;
}

constexpr SizeSetting HASH_MB{&HashEntries, 0, 1024, TranspositionEntries, DEFAULT_HASH_ENTRIES, "hash"};
constexpr SizeSetting HASH_POWER{&HashEntries, 0, 25, PowerOfTwo, DEFAULT_HASH_ENTRIES, "hash"};
constexpr SizeSetting PAWN_MB{&PawnHashEntries, 0, 1024, PawnEntries, FALLBACK_PAWN_ENTRIES, "pawn hash"};
constexpr SizeSetting PAWN_POWER{&PawnHashEntries, 12, 23, PowerOfTwo, FALLBACK_PAWN_ENTRIES, "pawn hash"};
constexpr SizeSetting CACHE_MB{&EGTBHashSize, 1, 128, MegabytesToBytes, DEFAULT_CACHE_BYTES, "EGTB cache"};
constexpr SizeSetting CACHE_POWER{&EGTBHashSize, 20, 27, PowerOfTwo, DEFAULT_CACHE_BYTES, "EGTB cache"};

template <const SizeSetting& size>
void ApplySize(const SettingLine& line) {
    const int value = ReadNumber(line.Value);
    if (IsWithin(value, size.Low, size.High)) {
        *size.Setting = size.Convert(value);
        return;
    }
    *size.Setting = size.Fallback;
    char text[80];
    std::snprintf(text, sizeof text, "Incorrect %s size setting in Kestrovan.ini; set to default", size.Name);
    Warn(line, text);
}

// A number held between 0 and a limit, with a warning that names the bound.
int ReadBounded(const SettingLine& line, const char* name, int limit) {
    const int value = ReadNumber(line.Value);
    if (IsWithin(value, 0, limit)) return value;
    const int bound = value < 0 ? 0 : limit;
    char text[64];
    std::snprintf(text, sizeof text, "Incorrect %s setting; set to %d", name, bound);
    Warn(line, text);
    return bound;
}

void ApplyAggressivity(const SettingLine& line) {
    SetAggressivity(ReadBounded(line, "AGGRESSIVITY", 300));
}
void ApplyTropism(const SettingLine& line) {
    SetTropism(ReadBounded(line, "TROPISM", 300));
}
void ApplyCowardice(const SettingLine& line) {
    SetCowardice(ReadBounded(line, "COWARDICE", 300));
}
void ApplyVariety(const SettingLine& line) {
    VarietyOfPlay = ReadBounded(line, "VarietyOfPlay", 100);
}

void WarnUnknown(const SettingLine& line) {
    Print("Kestrovan.ini(%d) WARNING: Token unknown \"%s\"\n", line.Number, line.Value);
    FlushOutput();
}

struct NamedValue {
    const char* Name;
    int Value;
};

// Sets one of several named values; the first name that matches counts.
template <size_t count>
void SetNamed(const SettingLine& line, int& setting, const NamedValue (&values)[count]) {
    for (const NamedValue& value : values) {
        if (!MatchKeyword(value.Name, line.Value)) continue;
        setting = value.Value;
        return;
    }
    WarnUnknown(line);
}

template <int& setting>
void ApplySwitch(const SettingLine& line) {
    SetNamed(line, setting, {{"on", 1}, {"true", 1}, {"off", 0}, {"false", 0}});
}

void ApplyPondering(const SettingLine& line) {
    ApplySwitch<PonderingAllowed>(line);
    if (!PonderingAllowed) PonderingOn = 0;
}

void ApplyBookMode(const SettingLine& line) {
    SetNamed(line, BookLearningMode, {{"discover", 1}, {"kill", 0}});
}

template <int& setting>
void ApplyNumber(const SettingLine& line) {
    setting = ReadNumber(line.Value);
}

void ApplyBookName(const SettingLine& line) {
    OpenBook(line.Rest);
}

// The first row that a line matches counts; keys match by MatchKeyword, so the order has a meaning.
struct SettingRow {
    const char* Key;
    void (*Apply)(const SettingLine& line);
};

const SettingRow SettingTable[] = {
    {"TranspositionSizeMb", ApplySize<HASH_MB>},
    {"TranspositionSize", ApplySize<HASH_POWER>},
    {"ResignValue", ApplyNumber<ResignValue>},
    {"ResignTimes", ApplyNumber<ResignTimes>},
    {"PawnHashSizeMb", ApplySize<PAWN_MB>},
    {"PawnHashSize", ApplySize<PAWN_POWER>},
    {"EGTBHashSizeMb", ApplySize<CACHE_MB>},
    {"EGTBCacheSizeMb", ApplySize<CACHE_MB>},
    {"EGTBHashSize", ApplySize<CACHE_POWER>},
    {"EGTBCacheSize", ApplySize<CACHE_POWER>},
    {"Aggressivity", ApplyAggressivity},
    {"Tropism", ApplyTropism},
    {"Cowardice", ApplyCowardice},
    {"VarietyOfPlay", ApplyVariety},
    {"BookLearningBound", ApplyNumber<BookLearningBound>},
    {"Learning", ApplySwitch<Learning>},
    {"UseBookLearning", ApplySwitch<UseBookLearning>},
    {"Pondering", ApplyPondering},
    {"UseEGTB", ApplySwitch<UseEGTB>},
    {"EGTBPath", [](const SettingLine& line) { SetTablebasePath(line.Rest); }},
    {"OpeningsBook", ApplyBookName},
    {"BookLearningMode", ApplyBookMode},
    {"UseLearningData", ApplySwitch<UseLearningData>},
    {"UseBookWeights", ApplySwitch<UseBookWeights>},
    {"LogLearningIntoFile", ApplySwitch<LogLearningIntoFile>},
};

// Cuts a line at its first byte below a space, bytes above 127 counting as negative.
void CutLine(char* line) {
    while (static_cast<signed char>(*line) >= 32) ++line;
    *line = '\0';
}

void ApplyLine(char* line, int number) {
    if (*line == '\0' || *line == ';') return;
    CutLine(line);
    if (Tokenize(line, " =\r\n,\"") < 2) return;
    const SettingLine setting{number, Tokens[1], line + TokenOffset[1]};
    for (const SettingRow& row : SettingTable) {
        if (!MatchKeyword(row.Key, line)) continue;
        row.Apply(setting);
        return;
    }
}

const char* OnOff(int setting) {
    return setting ? "on" : "off";
}

}  // namespace

int TranspositionEntries(int megabytes) {
    return megabytes * MEGABYTE / static_cast<int>(sizeof(HashEntry));
}

int PawnEntries(int megabytes) {
    return megabytes * MEGABYTE / static_cast<int>(sizeof(PawnEntry));
}

void SetDefaultSettings() {
    HashEntries = DEFAULT_HASH_ENTRIES;
    PawnHashEntries = START_PAWN_ENTRIES;
    EGTBHashSize = DEFAULT_CACHE_BYTES;
    SetTablebasePath(DefaultTablebasePath().c_str());
    SetAggressivity(100);
    SetCowardice(100);
    SetTropism(100);
    ResignValue = 800;
    ResignTimes = 3;
    OwnBook = UseBookLearning = UseBookWeights = UseEGTB = 1;
    Learning = UseLearningData = LogLearningIntoFile = 0;
    BookLearningMode = 0;
    BookLearningBound = 400;
    VarietyOfPlay = 10;
    PonderingAllowed = PonderingOn = 1;
}

void ReadSettingsFile() {
    std::FILE* file = std::fopen(FILE_NAME, "r");
    if (file == nullptr) return;
    const int first = std::getc(file);
    if (first == EOF) {
        std::fclose(file);
        return;
    }
    std::ungetc(first, file);
    char line[LINE_BUFFER] = "";
    // The last line of a file that ends with a line end is applied once more: reading fails and leaves it in
    // the buffer. Deliberate; all settings bear it.
    for (int number = 1; !std::feof(file) && !std::ferror(file); ++number) {
        if (std::fgets(line, LINE_BUFFER, file) == nullptr && std::ferror(file)) break;
        ApplyLine(line, number);
    }
    std::fclose(file);
}

void PrintSettings() {
    Print("Transposition size is %d entries (%lld bytes)\n", HashEntries,
          static_cast<long long>(HashEntries) * static_cast<long long>(sizeof(HashEntry)));
    Print("Pawn hash size is %d entries (%lld bytes)\n", PawnHashEntries,
          static_cast<long long>(PawnHashEntries) * static_cast<long long>(sizeof(PawnEntry)));
    Print("EGTBHashSize = %d bytes\n", EGTBHashSize);
    Print("Aggressivity = %d (%d)%%\n", Aggressivity.Raw, Aggressivity.Scaled);
    Print("Cowardice = %d (%d)%%\n", Cowardice.Raw, Cowardice.Scaled);
    Print("Tropism = %d (%d)%%\n", Tropism.Raw, Tropism.Scaled);
    Print("ResignValue = %d\nResignTimes = %d\n", ResignValue, ResignTimes);
    Print("UseEGTB = %s\n", OnOff(UseEGTB));
    Print("EGTB path = \"%s\"\n", tb_path);
    Print("UseBookWeights = %s\n", OnOff(UseBookWeights));
    Print("UseBookLearning = %s\n", OnOff(UseBookLearning));
    Print("BookLearningMode = %s\n", BookLearningMode ? "DISCOVER" : "KILL");
    Print("VarietyOfPlay = %d\nBookLearningBound = %d\n", VarietyOfPlay, BookLearningBound);
    Print("UseLearning = %s\n", OnOff(Learning));
    Print("UseLearningData = %s\n", OnOff(UseLearningData));
    Print("LogLearningIntoFile = %s\n", OnOff(LogLearningIntoFile));
    Print("Pondering = %s\n\n", OnOff(PonderingAllowed));
    FlushOutput();
}
