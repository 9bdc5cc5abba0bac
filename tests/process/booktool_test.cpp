// kestrovan-book from outside.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "tests/process/tooltest.h"

namespace {

constexpr char GAMES[] =
    "[Event \"a\"]\n\n1. e4 e5 2. Nf3 1-0\n\n1. e4 c5 0-1\n1. e4 e5 1/2\n1. Sf3 d5\n1-0\n"
    "[FEN \"4k3/8/8/8/8/8/4P3/4K3 w - -\"]\n1. e4 1-0\n1. d4 *\n1-0\n";

class BookToolTest : public ToolTest {
  protected:
    BookToolTest() : ToolTest(KESTROVAN_BOOK) { directory_.WriteFile("games.pgn", GAMES); }
};

TEST_F(BookToolTest, BuildsAndShowsABook) {
    ASSERT_EQ(Run("build games.pgn -o Book.kvb --min-games 1"), 0) << errors_;
    EXPECT_EQ(errors_, "games.pgn:7: game 4: can't recognize Sf3\n");
    for (const char* line : {"games used                 3\n", "skipped: broken            1\n",
                             "         set up            1\n", "         no result         1\n",
                             "         no moves          1\n", "positions                  3\n",
                             "moves                      4\n"}) {
        EXPECT_TRUE(Says(line)) << line << "in\n" << output_;
    }
    EXPECT_EQ(Run("list Book.kvb --moves '1. e4'"), 0);
    EXPECT_EQ(output_,
              "e5      e7e5   25 % (1 good, 3 bad)\n"
              "c5      c7c5   100 % (2 good, 0 bad)\n");
    EXPECT_EQ(Run("list Book.kvb --fen 'rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2'"), 0);
    EXPECT_EQ(output_, "Nf3     g1f3   100 % (2 good, 0 bad)\n");
    EXPECT_EQ(Run("list Book.kvb --moves 'd2d4 Nf6'"), 0);
    EXPECT_EQ(output_, "The position is not in the book.\n");
    EXPECT_EQ(Run("export Book.kvb"), 0);
    const std::string text = output_;
    EXPECT_TRUE(Says(
        "  2. Nf3  100 % (2 good, 0 bad)\n 1... c5  100 % (2 good, 0 bad)\n\n# Reached: 3 of 3 positions.\n"))
        << text;
    EXPECT_EQ(Run("export Book.kvb -o text"), 0);
    EXPECT_EQ(directory_.ReadFile("text"), text);
    EXPECT_EQ(Run("export Book.kvb --depth 1"), 0);
    EXPECT_TRUE(Says("Reached: 1 of 3")) << output_;
    EXPECT_EQ(Run("check Book.kvb"), 0);
    EXPECT_TRUE(Says("no fault\n")) << output_;
}

TEST_F(BookToolTest, FindsDamage) {
    ASSERT_EQ(Run("build games.pgn -o Book.kvb --min-games 1"), 0);
    const std::string good = directory_.ReadFile("Book.kvb");
    std::string bad = good;
    bad[36 + 11] = 1;  // the highest byte of a list's place
    directory_.WriteFile("bad", bad);
    directory_.WriteFile("short", good.substr(0, good.size() - 5));
    EXPECT_EQ(Run("check short"), 1);
    EXPECT_TRUE(Says("list outside the file's part for lists: 1\n  position ")) << output_;
    EXPECT_EQ(Run("export short"), 0) << "what can be read is shown";
    EXPECT_EQ(Run("check bad"), 1);
    EXPECT_TRUE(Says("the book is damaged\n")) << output_;
    EXPECT_EQ(Run("check games.pgn"), 1);
    EXPECT_TRUE(Says("damaged header: 1\n  it doesn't begin like a book\n")) << output_;
}

TEST_F(BookToolTest, RefusesWithAReason) {
    ASSERT_EQ(Run("build games.pgn -o Book.kvb"), 0);
    ExpectRefusal("", "subcommand");
    ExpectRefusal("build games.pgn", "--output");
    ExpectRefusal("build -o new", "no file of games");
    ExpectRefusal("build missing.pgn -o new", "can't open missing.pgn");
    ExpectRefusal("build . -o new", "can't read .");
    ExpectRefusal("build games.pgn -o games.pgn", "overwrite games.pgn");
    ExpectRefusal("build games.pgn -o missing/new", "missing/new");
    ExpectRefusal("build games.pgn -o new --depth 0", "--depth");
    ExpectRefusal("build games.pgn -o new --max-count 255", "--max-count");
    ExpectRefusal("build games.pgn -o new --version 2", "--version");
    ExpectRefusal("list missing", "can't open missing");
    ExpectRefusal("list games.pgn", "games.pgn is no book: it doesn't begin like a book");
    ExpectRefusal("list Book.kvb --moves 'e4 e4'", "no legal move: e4");
    ExpectRefusal("list Book.kvb --moves 'd4 d5 Nf3 Nf6 Nd2'", "ambiguous move: Nd2");
    ExpectRefusal("list Book.kvb --fen '8/8/8/8/8/8/8/8 w - -'", "illegal position");
    ExpectRefusal("export Book.kvb -o missing/text", "can't make missing/text");
    EXPECT_FALSE(std::filesystem::exists(directory_.FilePath("new")));
    EXPECT_EQ(directory_.ReadFile("games.pgn"), GAMES);
}

// The files in the test's directory.
std::set<std::string> FilesIn(const TempDirectory& directory) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

TEST_F(BookToolTest, ReplacesABook) {
    directory_.WriteFile("Book.kvb", "old");
    EXPECT_EQ(Run("build --lines games.pgn -o Book.kvb --version 0"), 0);
    EXPECT_EQ(Run("list Book.kvb"), 0);
    EXPECT_EQ(output_, "d4      d2d4   weight 50\ne4      e2e4   weight 50\n");
    EXPECT_EQ(FilesIn(directory_), (std::set<std::string>{"Book.kvb", "errors", "games.pgn", "output"}));
}

// A limit on the length of files, in blocks of 512 bytes, is as good as a full disk.
TEST_F(BookToolTest, KeepsTheOldBookWhenTheDiskIsFull) {
    std::string games;
    for (const char first : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
        for (const char second : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
            for (const char third : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
                games += {first, '3', ' ', second, '6', ' ', third, '4', ' ', '1', '-', '0', '\n'};
            }
        }
    }
    directory_.WriteFile("many.pgn", games);
    directory_.WriteFile("Book.kvb", "old");
    for (const char* blocks : {"0", "1", "5"}) {
        const std::string limit = std::string("trap '' XFSZ; ulimit -f ") + blocks;
        EXPECT_EQ(Run("build many.pgn -o Book.kvb --min-games 1", "/dev/null", limit), 1) << blocks;
        EXPECT_TRUE(blocks[0] == '0' || errors_.find("can't write") != std::string::npos) << errors_;
        EXPECT_EQ(directory_.ReadFile("Book.kvb"), "old");
        EXPECT_EQ(FilesIn(directory_),
                  (std::set<std::string>{"Book.kvb", "errors", "games.pgn", "many.pgn"}));
    }
    EXPECT_EQ(Run("build many.pgn -o Book.kvb --min-games 1", "/dev/null"), 0);
    EXPECT_EQ(Run("check Book.kvb"), 0);
}

TEST_F(BookToolTest, NoticesFailuresOfOutput) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no device that is full";
    ASSERT_EQ(Run("build games.pgn -o Book.kvb --min-games 1"), 0);
    EXPECT_EQ(Run("export Book.kvb -o /dev/full"), 1);
    EXPECT_NE(errors_.find("can't write /dev/full"), std::string::npos) << errors_;
    EXPECT_EQ(Run("list Book.kvb", "/dev/full"), 1) << "standard output counts, too";
}

}  // namespace
