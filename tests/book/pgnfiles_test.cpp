// The reader of games on files as they are found.

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "book/pgnreader.h"
#include "tests/support/datafile.h"
#include "tests/support/walker.h"

namespace {

using PgnFilesTest = CoreTest;

// What a table row holds, counted: games, broken, with a result, set up, plies.
std::string Count(std::FILE* file) {
    PgnReader reader(file);
    PgnGame game;
    size_t games = 0, broken = 0, results = 0, setUp = 0, plies = 0;
    for (PgnStatus status; (status = reader.Next(game)) != PgnStatus::END;) {
        EXPECT_EQ(status == PgnStatus::BROKEN, !game.Fault.empty());
        broken += status == PgnStatus::BROKEN;
        if (status == PgnStatus::BROKEN) continue;
        ++games;
        results += game.Result != GameResult::UNKNOWN;
        setUp += game.HasSetUp;
        plies += game.Moves.size();
    }
    std::ostringstream row;
    row << games << ' ' << broken << ' ' << results << ' ' << setUp << ' ' << plies;
    return row.str();
}

// Files that are not ours to copy are read where the environment variable KESTROVAN_PGN_FILES says they are.
TEST_F(PgnFilesTest, AreReadWhole) {
    const char* elsewhere = std::getenv("KESTROVAN_PGN_FILES");
    int ours = 0, others = 0;
    for (const std::string& line : ReadDataLines("pgn/files.txt")) {
        const std::vector<std::string> words = SplitWords(line);
        if (words[0] == "#") continue;
        using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;
        File file(std::fopen((KESTROVAN_TEST_DATA "/pgn/" + words[0]).c_str(), "rb"), &std::fclose);
        ours += file != nullptr;
        if (file == nullptr && elsewhere != nullptr) {
            file.reset(std::fopen((elsewhere + ("/" + words[0])).c_str(), "rb"));
            ++others;
            EXPECT_NE(file, nullptr) << words[0];
        }
        if (file != nullptr) {
            EXPECT_EQ(words[0] + " " + Count(file.get()), line);
        }
    }
    EXPECT_EQ(ours, 10);
    EXPECT_EQ(others, elsewhere != nullptr ? 37 : 0);
}

}  // namespace
