#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

constexpr char VALUES_MESSAGE[] = "Error loading values.txt\n";

std::string OutputWith(const std::string& settings) {
    Engine engine(ENGINE_PATH, settings);
    const std::string output = engine.ReadToEnd();
    EXPECT_EQ(engine.WaitForExit(), 0);
    return output;
}

// What a line of the settings report is about.
std::string Subject(const std::string& line) {
    return line.substr(0, line.find(line.starts_with("EGTB path") ? " = \""
                                    : line.find(" is ") < 20      ? " is "
                                                                  : " = "));
}

// The start-up output without settings, with messages about them and other report lines put in.
std::string OutputExpected(const std::string& messages, const std::vector<std::string>& lines) {
    std::string text = StartUpOutput();
    for (const std::string& line : lines) {
        const size_t start = text.find("\n" + Subject(line)) + 1;
        EXPECT_NE(start, 0u) << line;
        text.replace(start, text.find('\n', start) - start, line);
    }
    const size_t place = text.find(VALUES_MESSAGE) + std::string(VALUES_MESSAGE).size();
    return text.insert(place, messages);
}

TEST(StartUpTest, PrintsBannerMissingFilesAndSettings) {
    EXPECT_EQ(StartUpOutput(),
              "Kestrovan v1.50 [r2055/01.01.2014]\n"
              "Error loading values.txt\n"
              "Error opening \"Book.kvb\"!\n"
              "Transposition size is 524288 entries (10485760 bytes)\n"
              "Pawn hash size is 262144 entries (6291456 bytes)\n"
              "EGTBHashSize = 1048576 bytes\n"
              "Aggressivity = 100 (50)%\n"
              "Cowardice = 100 (50)%\n"
              "Tropism = 100 (200)%\n"
              "ResignValue = 800\n"
              "ResignTimes = 3\n"
              "UseEGTB = on\n"
              "EGTB path = \"c:\\tablebases\\\"\n"
              "UseBookWeights = on\n"
              "UseBookLearning = on\n"
              "BookLearningMode = KILL\n"
              "VarietyOfPlay = 10\n"
              "BookLearningBound = 400\n"
              "UseLearning = off\n"
              "UseLearningData = off\n"
              "LogLearningIntoFile = off\n"
              "Pondering = on\n"
              "\n"
              "EGTB files not found\n");
}

struct SettingsCase {
    std::string Settings;
    std::string Messages;            // %: "Kestrovan.ini(1) WARNING: "
    std::vector<std::string> Lines;  // of the report that differ
};

void CheckSettings(const SettingsCase& row) {
    std::string messages = row.Messages;
    for (size_t place = 0; (place = messages.find('%')) != std::string::npos;) {
        messages.replace(place, 1, "Kestrovan.ini(1) WARNING: ");
    }
    EXPECT_EQ(OutputWith(row.Settings), OutputExpected(messages, row.Lines)) << row.Settings;
}

constexpr char HASH_WARNING[] = "%Incorrect hash size setting in Kestrovan.ini; set to default\n";
constexpr char PAWN_WARNING[] = "%Incorrect pawn hash size setting in Kestrovan.ini; set to default\n";
constexpr char CACHE_WARNING[] = "%Incorrect EGTB cache size setting in Kestrovan.ini; set to default\n";
constexpr char DEFAULT_HASH[] = "Transposition size is 524288 entries (10485760 bytes)";
constexpr char FALLBACK_PAWN[] = "Pawn hash size is 524288 entries (12582912 bytes)";

TEST(SettingsFileTest, SizesTables) {
    const SettingsCase rows[] = {
        {"TranspositionSizeMb = 64", "", {"Transposition size is 3355443 entries (67108860 bytes)"}},
        {"TranspositionSizeMb = 0", "", {"Transposition size is 0 entries (0 bytes)"}},
        {"TranspositionSizeMb = 1025", HASH_WARNING, {DEFAULT_HASH}},
        {"TranspositionSizeMb = -1", HASH_WARNING, {DEFAULT_HASH}},
        {"TranspositionSize = 20", "", {"Transposition size is 1048576 entries (20971520 bytes)"}},
        {"TranspositionSize = 0", "", {"Transposition size is 1 entries (20 bytes)"}},
        {"TranspositionSize = 26", HASH_WARNING, {DEFAULT_HASH}},
        {"TranspositionSize = 99999999999", HASH_WARNING, {DEFAULT_HASH}},
        {"PawnHashSizeMb = 1", "", {"Pawn hash size is 43690 entries (1048560 bytes)"}},
        {"PawnHashSizeMb = 1025", PAWN_WARNING, {FALLBACK_PAWN}},
        {"PawnHashSize = 12", "", {"Pawn hash size is 4096 entries (98304 bytes)"}},
        {"PawnHashSize = 11", PAWN_WARNING, {FALLBACK_PAWN}},
        {"PawnHashSize = 24", PAWN_WARNING, {FALLBACK_PAWN}},
        {"EGTBHashSizeMb = 128", "", {"EGTBHashSize = 134217728 bytes"}},
        {"EGTBCacheSizeMb = 0", CACHE_WARNING, {}},
        {"EGTBHashSizeMb = 129", CACHE_WARNING, {}},
        {"EGTBCacheSize = 27", "", {"EGTBHashSize = 134217728 bytes"}},
        {"EGTBHashSize = 19", CACHE_WARNING, {}},
        {"EGTBCacheSize = 28", CACHE_WARNING, {}},
    };
    for (const SettingsCase& row : rows) CheckSettings(row);
}

TEST(SettingsFileTest, TakesNumbersWithinTheirBounds) {
    const SettingsCase rows[] = {
        {"Aggressivity = 350",
         "%Incorrect AGGRESSIVITY setting; set to 300\n",
         {"Aggressivity = 300 (150)%"}},
        {"Aggressivity = -1", "%Incorrect AGGRESSIVITY setting; set to 0\n", {"Aggressivity = 0 (0)%"}},
        {"Cowardice = 301", "%Incorrect COWARDICE setting; set to 300\n", {"Cowardice = 300 (150)%"}},
        {"Cowardice = 33", "", {"Cowardice = 33 (16)%"}},
        {"Cowardice = -5", "%Incorrect COWARDICE setting; set to 0\n", {"Cowardice = 0 (0)%"}},
        {"Tropism = 300", "", {"Tropism = 300 (600)%"}},
        {"Tropism = 4000000000", "%Incorrect TROPISM setting; set to 300\n", {"Tropism = 300 (600)%"}},
        {"Tropism = -1", "%Incorrect TROPISM setting; set to 0\n", {"Tropism = 0 (0)%"}},
        {"Tropism = word", "", {"Tropism = 0 (0)%"}},
        {"VarietyOfPlay = 101", "%Incorrect VarietyOfPlay setting; set to 100\n", {"VarietyOfPlay = 100"}},
        {"VarietyOfPlay = -1", "%Incorrect VarietyOfPlay setting; set to 0\n", {"VarietyOfPlay = 0"}},
        {"ResignValue = -7\nResignTimes = 12\nBookLearningBound = 5",
         "",
         {"ResignValue = -7", "ResignTimes = 12", "BookLearningBound = 5"}},
    };
    for (const SettingsCase& row : rows) CheckSettings(row);
}

TEST(SettingsFileTest, TakesSwitches) {
    const SettingsCase rows[] = {
        {"Pondering = maybe", "%Token unknown \"maybe\"\n", {}},
        {"Learning = o\nUseLearningData = TRUE\nLogLearningIntoFile = t\nUseBookWeights = of",
         "",
         {"UseLearning = on", "UseLearningData = on", "LogLearningIntoFile = on", "UseBookWeights = off"}},
        {"UseBookLearning = offside\nPondering = f", "", {"UseBookLearning = off", "Pondering = off"}},
        {"UseEGTB = 1", "%Token unknown \"1\"\n", {}},
        {"BookLearningMode = Discover", "", {"BookLearningMode = DISCOVER"}},
        {"BookLearningMode = d\nBookLearningMode = k", "", {}},
        {"BookLearningMode = on", "%Token unknown \"on\"\n", {}},
    };
    for (const SettingsCase& row : rows) CheckSettings(row);
    const std::string output = OutputWith("UseEGTB = off");
    EXPECT_NE(output.find("\nUseEGTB = off\n"), std::string::npos);
    EXPECT_EQ(output.find("EGTB files not found"), std::string::npos);
}

TEST(SettingsFileTest, CutsAndSkipsLines) {
    const SettingsCase rows[] = {
        {"", "", {}},
        {"; Tropism = 1\n\n\t Tropism = 2\nUnknown = 3\nTropism\n", "", {}},
        {"   tROPISM,\"30\"", "", {"Tropism = 30 (60)%"}},
        {"TropismAndMore 31", "", {"Tropism = 31 (62)%"}},
        {"EGTBPath = /a\x01/b", "", {"EGTB path = \"/a\""}},
        {"EGTBPath = /a\t/b", "", {"EGTB path = \"/a\""}},
        {"EGTBPath = /a\xE9/b", "", {"EGTB path = \"/a\""}},
        {std::string("EGTBPath = /a\0/b", 16), "", {"EGTB path = \"/a\""}},
        {"Tropism = 35\r\n", "", {"Tropism = 35 (70)%"}},
        {"EGTBPath = d:\\tb files\\", "", {"EGTB path = \"d:\\tb files\\\""}},
        {"EGTBPath = /srv/tables, more = 1 \n", "", {"EGTB path = \"/srv/tables, more = 1 \""}},
    };
    for (const SettingsCase& row : rows) CheckSettings(row);
}

TEST(SettingsFileTest, CountsLines) {
    const std::string warning = " WARNING: Incorrect TROPISM setting; set to 300\n";
    // A line end behind the last line has it applied once more, under the next number.
    EXPECT_EQ(OutputWith("\nTropism = 400\n"),
              OutputExpected("Kestrovan.ini(2)" + warning + "Kestrovan.ini(3)" + warning,
                             {"Tropism = 300 (600)%"}));
    // 249 bytes are a line, whatever follows.
    const std::string comment = ";" + std::string(248, 'x');
    EXPECT_EQ(OutputWith(comment + "Cowardice = 7\nTropism = 400"),
              OutputExpected("Kestrovan.ini(3)" + warning, {"Tropism = 300 (600)%", "Cowardice = 7 (3)%"}));
}

TEST(SettingsFileTest, NamesABook) {
    const std::string messages = "Error opening \"my book.kvb\"!\n";
    EXPECT_EQ(OutputWith("OpeningsBook = my book.kvb"), OutputExpected(messages, {}))
        << "without the book that is named, the default one is tried";
}

TEST(SettingsFileTest, BearsADirectoryOfItsName) {
    TempDirectory directory;
    std::filesystem::create_directory(directory.FilePath("Kestrovan.ini"));
    // A shell is what starts the program in a directory that is not its own.
    directory.WriteFile("start", "#!/bin/sh\ncd '" + directory.Path() + "' && exec '" + ENGINE_PATH + "'\n");
    std::filesystem::permissions(directory.FilePath("start"), std::filesystem::perms::owner_all);
    Engine engine(directory.FilePath("start"));
    EXPECT_EQ(engine.ReadToEnd(), StartUpOutput());
    EXPECT_EQ(engine.WaitForExit(), 0);
}

TEST(StartUpTest, PlaysWithTheSmallestTables) {
    for (const char* size : {"TranspositionSizeMb = 0\nPawnHashSizeMb = 0", "TranspositionSize = 0"}) {
        Session engine(size);
        EXPECT_EQ(engine.BestMove("uci\nposition fen 6k1/5ppp/8/8/8/8/8/R6K w - -\ngo depth 4"), "a1a8");
    }
}

TEST(StartUpTest, KeepsTheWeightsThatItWrites) {
    Session engine;
    const std::string before = Join(engine.Ask("force\ne2e4\nevl"));
    EXPECT_TRUE(engine.Ask("writevalues").empty());
    EXPECT_TRUE(engine.Ask("reload").empty()) << "there is a file now";
    EXPECT_EQ(Join(engine.Ask("evl")), before);
    engine.Directory().WriteFile("values.txt", "1\n2\n");
    EXPECT_EQ(Join(engine.Ask("reload")), VALUES_MESSAGE);
    EXPECT_EQ(Join(engine.Ask("evl")), before);
}

}  // namespace
