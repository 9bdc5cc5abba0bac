#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

constexpr char VALUES_MESSAGE[] = "Error loading values.txt\n";

// The start-up output without settings, with messages about them and other report lines put in.
std::string OutputExpected(const std::string& messages, const std::vector<std::string>& lines) {
    constexpr size_t SUBJECT_LENGTH = 9;  // enough of a line to tell what it is about
    std::string text = WholeOutput("");
    for (const std::string& line : lines) {
        const size_t start = text.find("\n" + line.substr(0, SUBJECT_LENGTH)) + 1;
        EXPECT_NE(start, 0u) << line;
        text.replace(start, text.find('\n', start) - start, line);
    }
    const size_t place = text.find(VALUES_MESSAGE) + std::string(VALUES_MESSAGE).size();
    return text.insert(place, messages);
}

TEST(StartUpTest, PrintsBannerMissingFilesAndSettings) {
    EXPECT_EQ(WholeOutput(""),
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

TEST(StartUpTest, ReadsTheSettingsFile) {
    const auto warning = [](int line, const std::string& text) {
        return "Kestrovan.ini(" + std::to_string(line) + ") WARNING: " + text + "\n";
    };
    const std::string toDefault = " setting in Kestrovan.ini; set to default";
    const std::string tropismWarning = "Incorrect TROPISM setting; set to 300";
    const struct {
        std::string Settings, Messages;
        std::vector<std::string> Lines;  // of the report that differ
    } rows[] = {
        {"TranspositionSizeMb = 1024\nPawnHashSizeMb = 1\nEGTBHashSizeMb = 128\nResignValue = -7\n"
         "ResignTimes = 12\nLearning = o\nUseBookWeights = of\nBookLearningMode = Discover",
         "",
         {"Transposition size is 53687091 entries (1073741820 bytes)",
          "Pawn hash size is 43690 entries (1048560 bytes)", "EGTBHashSize = 134217728 bytes",
          "ResignValue = -7", "ResignTimes = 12", "UseLearning = on", "UseBookWeights = off",
          "BookLearningMode = DISCOVER"}},
        {"TranspositionSizeMb = 1025\nPawnHashSize = 11\nEGTBCacheSize = 28\nAggressivity = -1\n"
         "VarietyOfPlay = 101\nPondering = maybe",
         warning(1, "Incorrect hash size" + toDefault) + warning(2, "Incorrect pawn hash size" + toDefault) +
             warning(3, "Incorrect EGTB cache size" + toDefault) +
             warning(4, "Incorrect AGGRESSIVITY setting; set to 0") +
             warning(5, "Incorrect VarietyOfPlay setting; set to 100") +
             warning(6, "Token unknown \"maybe\""),
         {"Pawn hash size is 524288 entries (12582912 bytes)", "Aggressivity = 0 (0)%",
          "VarietyOfPlay = 100"}},
        {"TranspositionSize = 20", "", {"Transposition size is 1048576 entries (20971520 bytes)"}},
        {"; Tropism = 1\n\n\t Tropism = 2\nUnknown = 3\nTropism\n", "", {}},
        {"   tROPISM,\"30\"\nCowardiceAndMore 31\r\nEGTBPath = /srv/tables, more = 1 \t/b",
         "",
         {"Tropism = 30 (60)%", "Cowardice = 31 (15)%", "EGTB path = \"/srv/tables, more = 1 \""}},
        // Without the book that is named, the default one is tried.
        {"OpeningsBook = my book.kvb", "Error opening \"my book.kvb\"!\n", {}},
        // A line end behind the last line has it applied once more, under the next number.
        {"\nTropism = 4000000000\n",
         warning(2, tropismWarning) + warning(3, tropismWarning),
         {"Tropism = 300 (600)%"}},
        // 249 bytes are a line, whatever follows.
        {";" + std::string(248, 'x') + "Cowardice = 7\nTropism = 400",
         warning(3, tropismWarning),
         {"Tropism = 300 (600)%", "Cowardice = 7 (3)%"}},
    };
    for (const auto& [settings, messages, lines] : rows) {
        EXPECT_EQ(WholeOutput("", settings), OutputExpected(messages, lines)) << settings;
    }
    EXPECT_EQ(WholeOutput("", "UseEGTB = off").find("EGTB files not found"), std::string::npos);
}

TEST(StartUpTest, PlaysWithTheSmallestTables) {
    for (const char* size : {"TranspositionSizeMb = 0\nPawnHashSizeMb = 0", "TranspositionSize = 0"}) {
        Session engine(size);
        EXPECT_EQ(engine.BestMove("uci\nposition fen 6k1/5ppp/8/8/8/8/8/R6K w - -\ngo depth 4"), "a1a8");
    }
}

}  // namespace
