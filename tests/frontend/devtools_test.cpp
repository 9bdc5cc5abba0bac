#include "frontend/devtools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/movetext.h"
#include "eval/evaluate.h"
#include "frontend/commands.h"
#include "frontend/newgame.h"
#include "frontend/tokens.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"
#include "tests/support/tempdirectory.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

class DevToolsTest : public EvalTest {
  protected:
    void SetUp() override {
        EvalTest::SetUp();
        std::filesystem::current_path(directory_.Path());
    }
    void TearDown() override {
        std::filesystem::current_path("/");
        EvalTest::TearDown();
    }

    static std::string Run(const std::string& line) {
        testing::internal::CaptureStdout();
        SetInputLine(line);
        InterpretCommand();
        return testing::internal::GetCapturedStdout();
    }

    // The lines that "pgneval" writes for the games, whose message is as told.
    std::vector<std::string> Statistics(const std::string& games, const std::string& message = "") {
        directory_.WriteFile("games.pgn", games);
        directory_.WriteFile("terms.csv", "");
        EXPECT_EQ(Run("pgneval games.pgn terms.csv"), message) << games;
        return Split(directory_.ReadFile("terms.csv"), '\n');
    }

    const TempDirectory directory_;
};

// The rows of the table of columns in the documents, in order: number, name, meaning, unit, view.
std::vector<std::vector<std::string>> DocumentedColumns() {
    std::vector<std::vector<std::string>> columns;
    bool isInSection = false;
    for (const std::string& line : ReadDataLines("../../docs/evaluation.md")) {
        if (line.starts_with("## ")) isInSection = line == "## Statistics of games";
        if (!isInSection || !line.starts_with("| ") || std::isdigit(line[2]) == 0) continue;
        columns.push_back(Split(line.substr(2), '|'));
        for (std::string& cell : columns.back()) {
            cell.erase(0, cell.find_first_not_of(' '));
            cell.erase(cell.find_last_not_of(' ') + 1);
        }
    }
    return columns;
}

// A line's fields by the names that the documents give them.
std::map<std::string, std::string> Fields(const std::string& line) {
    const std::vector<std::vector<std::string>> columns = DocumentedColumns();
    const std::vector<std::string> values = Split(line, ';');
    EXPECT_EQ(columns.size(), 32u);
    EXPECT_EQ(values.size(), columns.size()) << line;
    std::map<std::string, std::string> fields;
    for (size_t i = 0; i < std::min(columns.size(), values.size()); ++i) {
        EXPECT_EQ(columns[i][0], std::to_string(i + 1));
        fields[columns[i][1]] = values[i];
    }
    return fields;
}

TEST_F(DevToolsTest, WritesAPositionOfAGameALine) {
    const std::vector<std::string> lines = Statistics(
        "[Result \"0-1\"]\n1. e4 d5 2. exd5 {(} Qxd5 (2... Nf6) 3. Nc3 Qe5+ 4. Be2 1-0\n"
        "1. d4 1/2-1/2\n1. c4\n"
        "[FEN \"8/1P6/8/8/6k1/8/8/K7 w - - 3 70\"]\n70. b8=Q Kf3 0-1\n");
    std::string places;
    for (const std::string& line : lines) {
        std::map<std::string, std::string> fields = Fields(line);
        for (const char* name : {"game", "ply", "result", "side", "quiet", "material", "plies_left"}) {
            places += fields[name] + ' ';
        }
        LoadCommonFEN(fields["position"].c_str());
        int score = 0;
        Evaluate(&score);
        EXPECT_EQ(fields["score"], std::to_string(board.SideToMove == WHITE ? score : -score)) << line;
        places += '\n';
    }
    EXPECT_EQ(places,
              "1 1 2 1 1 0 6 \n1 2 2 0 0 0 5 \n1 3 2 1 0 100 4 \n1 4 2 0 0 0 3 \n1 5 2 1 1 0 2 \n"
              "1 6 2 0 0 0 1 \n1 7 2 1 1 0 0 \n2 1 1 1 1 0 0 \n3 1 -1 1 1 0 0 \n4 1 0 1 0 900 1 \n"
              "4 2 0 0 1 900 0 \n");
}

// What the documents call the view decides what becomes of a number when the colours are exchanged.
TEST_F(DevToolsTest, LooksFromTheViewThatIsDocumented) {
    LoadFEN("2r1r1k1/2p3p1/p3pn2/3n4/3P4/2N1B3/1P3P1P/R2QR1K1 w - -");
    const std::string start = GetEPD();
    Reflect(56);
    const std::string reflected = GetEPD();
    const std::string game = "[FEN \"" + start + "\"] d1g4 g8f7 g4g7 f7g7 b2b3 d5c3 e3h6 g7h6 1-0\n";
    const std::string other = "[FEN \"" + reflected + "\"] d8g5 g1f2 g5g2 f2g2 b7b6 d4c6 e6h3 g2h3 0-1";
    const std::vector<std::string> lines = Statistics(game + other);
    ASSERT_EQ(lines.size(), 16u);
    for (size_t ply = 0; ply < 8; ++ply) {
        std::map<std::string, std::string> fields = Fields(lines[ply]), others = Fields(lines[ply + 8]);
        for (const std::vector<std::string>& column : DocumentedColumns()) {
            const std::string &name = column[1], view = column.size() > 4 ? column[4] : "";
            if (name == "game" || name == "position") continue;
            const int number = std::stoi(fields[name]);
            const bool isOfSide = name.starts_with("white_") || name.starts_with("black_");
            const std::string twin = isOfSide ? (name[0] == 'w' ? "black" : "white") + name.substr(5) : name;
            const int expected = view == "White"    ? -number
                                 : name == "result" ? 2 - number
                                 : name == "side"   ? 1 - number
                                                    : number;
            EXPECT_EQ(std::stoi(others[twin]), expected) << name << " at ply " << ply;
        }
    }
}

// With few men about, the sums make the score but for the bonus of being on move.
TEST_F(DevToolsTest, TellsWhatTheScoreIsMadeOf) {
    const std::vector<std::string> lines = Statistics(
        "[FEN \"r3k2r/p1p5/p1p5/p1p1p2p/8/4B3/PPPPPPPP/R3K2R w KQkq -\"]\n"
        "e1g1 e8f7 g2g4 f7g6 g4h5 g6h5 a1e1 *");
    for (const std::string& line : lines) {
        std::map<std::string, double> numbers;
        for (const auto& [name, text] : Fields(line)) {
            if (name != "position") numbers[name] = std::stod(text);
        }
        const auto taper = [&](const std::string& bucket, const char* phase) {
            const double share = numbers[phase] / 256;
            return (1 - share) * numbers[bucket + "opening"] + share * numbers[bucket + "ending"];
        };
        const double sum = numbers["material"] + numbers["imbalance"] + taper("", "phase") +
                           taper("white_", "white_phase") - taper("black_", "black_phase");
        EXPECT_NEAR(numbers["score"], sum, 20) << line;
        EXPECT_GT(numbers["pawn_structure"], 0) << "tripled pawns";
        EXPECT_EQ(numbers["bishops"], 1);
    }
    EXPECT_EQ(lines.size(), 7u);
    EXPECT_EQ(Fields(lines.back())["passed"], "1");
    EXPECT_GT(std::stoi(Fields(lines.back())["attacked"]), 1);
}

TEST_F(DevToolsTest, EndsAtTheFirstBrokenGame) {
    const struct {
        std::string Games, Message;
        size_t Lines;
    } rows[] = {
        {"", "", 0},
        {"\xEF\xBB\xBF[Event \"a\"]\r\n\r\n{c}\r\n1. e4 e5\r\n*\r\n{d}\r\n[Event \"b\"]\r\n\r\n1. d4\r\n", "",
         3},
        {"1. c4 * 1. e4 e5 2. Sf3 1-0 1. d4", "\nCan't recognize: Sf3...\n", 3},
        {"1. e4 Ke7", "\nCan't recognize: Ke7...\n", 1},
        {"1. d4 d5 2. Nf3 Nf6 3. Nd2 * 1. d4", "\nAmbigous move: Nd2...\n", 4},
        {"1. d4 {", "\nCan't recognize: unclosed comment...\n", 1},
        {"[Variant \"Atomic\"] 1. e4 * 1. d4", "\nCan't recognize: variant Atomic...\n", 0},
        {"[FEN \"8/8\"] 1. e4 * 1. d4",
         "\nCan't recognize: illegal position: White must have exactly one king...\n", 0},
        {"1. c4 *\n[Event \"a\"]\n{c}\n[Site \"b\"]\n1. e4 *",
         "\nCan't recognize: comment among the tags...\n", 1},
    };
    for (const auto& [games, message, lines] : rows) {
        EXPECT_EQ(Statistics(games, message).size(), lines) << games;
    }
}

TEST_F(DevToolsTest, ReportsAndAddsToTheFixedFiles) {
    std::string games;
    for (int i = 0; i < 203; ++i) games += "1. e4 *\n";
    directory_.WriteFile(PGN_FILE, games);
    for (const size_t lines : {203, 406}) {
        EXPECT_EQ(Run("pgneval "), "Processed 101 games...\rProcessed 202 games...\r");
        EXPECT_EQ(Split(directory_.ReadFile(STATISTICS_FILE), '\n').size(), lines);
    }
}

TEST_F(DevToolsTest, EvaluatesLines) {
    std::string lines, scores, copied;
    for (int i = 1; i <= 25; ++i) {
        const std::string line =
            "4k3/8/8/8/8/8/" + std::string(1 + i % 8, 'P') + "/4K3 w - - " + std::to_string(i) + "\n";
        lines += line;
        if (i % 10 == 0) copied += line;
        int score = 0;
        LoadFEN(line.c_str());
        Evaluate(&score);
        scores += std::to_string(score) + "\n";
    }
    directory_.WriteFile("lines.epd", lines + "8/8/8/8/8/8/8/8 w - -");
    EXPECT_EQ(Run("epdevl lines.epd"), scores);
    EXPECT_EQ(directory_.ReadFile("out.epd"), copied);
    directory_.WriteFile("lines.epd", "\n\r\nno position\n" + std::string(300, 'k') + "\n");
    EXPECT_EQ(Split(Run("epdevl lines.epd"), '\n').size(), 5u) << "of a long line the rest is another";
}

TEST_F(DevToolsTest, NamesWhatCannotBeOpenedAndLosesNothing) {
    std::filesystem::create_directory("folder");
    directory_.WriteFile("games.pgn", "1. e4 *");
    directory_.WriteFile("other.pgn", "x");
    const struct {
        const char *Line, *Output;
    } rows[] = {
        {"pgneval none.pgn other.pgn", "Error opening file none.pgn...\n"},
        {"pgneval folder other.pgn", "Error opening file folder...\n"},
        {"pgneval games.pgn folder", "Error opening file folder...\n"},
        {"pgneval games.pgn none/terms.csv", "Error opening file none/terms.csv...\n"},
        {"pgneval games.pgn ./games.pgn", "Error (input is output): ./games.pgn\n"},
        {"epdevl none.epd", "Error opening file none.epd...\n"},
        {"epdevl folder", "Error opening file folder...\n"},
    };
    for (const auto& [line, output] : rows) EXPECT_EQ(Run(line), output) << line;
    EXPECT_EQ(directory_.ReadFile("games.pgn") + directory_.ReadFile("other.pgn"), "1. e4 *x");
    directory_.WriteFile("out.epd", "4k3/8/8/8/8/8/8/4K3 w - -\n");
    EXPECT_EQ(Run("epdevl out.epd"), "Error (input is output): out.epd\n");
    EXPECT_EQ(directory_.ReadFile("out.epd"), "4k3/8/8/8/8/8/8/4K3 w - -\n");
    std::filesystem::remove("out.epd");
    std::filesystem::create_directory("out.epd");
    EXPECT_EQ(Run("epdevl games.pgn"), "Error opening file out.epd...\n");
}

TEST_F(DevToolsTest, PutTheGameBack) {
    PlayMove(TextToMove("e2e4"));
    PlayMove(TextToMove("e7e5"));
    const Board before = board;
    directory_.WriteFile("games.pgn", "1. d4 d5 2. c4 * 1. x");
    directory_.WriteFile("lines.epd", "4k3/8/8/8/8/8/8/4K3 w - -\n");
    for (const char* line : {"pgneval games.pgn terms.csv", "epdevl lines.epd"}) {
        EngineSide = WHITE;
        Run(line);
        EXPECT_TRUE(board == before && EngineSide == WHITE && GamePly() == 2) << line;
        EXPECT_STREQ(MoveToText(LastMove()), "e7e5") << line;
    }
}

}  // namespace
