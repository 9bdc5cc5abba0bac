#include "book/bookcheck.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>

#include "book/bookbuilder.h"
#include "book/bookerror.h"
#include "book/bookexport.h"
#include "book/booktree.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

namespace {

class BookCheckTest : public CoreTest {
  protected:
    static constexpr Move E4 = BuildMove(12, 28, PAWN), E5 = BuildMove(52, 36, PAWN),
                          NF3 = BuildMove(6, 21, KNIGHT), D4 = BuildMove(11, 27, PAWN);

    // A book of six positions; the last is reached by two ways.
    void SetUp() override {
        CoreTest::SetUp();
        BookOptions options;
        options.MinGames = 1;
        BookBuilder builder(options, Path());
        PgnGame game;
        game.Result = GameResult::WHITE_WINS;
        for (const auto& moves :
             {std::vector<Move>{E4, E5, NF3}, {NF3, E5, E4, BuildMove(57, 42, KNIGHT)}, {D4}}) {
            game.Moves = moves;
            builder.AddGame(game);
        }
        builder.Write();
        good_ = directory_.ReadFile("Book.kvb");
    }

    std::string Path() const { return directory_.FilePath("Book.kvb"); }

    BookImage Image(const std::string& bytes) {
        directory_.WriteFile("Book.kvb", bytes);
        return BookImage(Path());
    }

    std::string Export(const std::string& bytes, int maxPlies) {
        const BookImage book = Image(bytes);
        const std::string path = directory_.FilePath("text");
        const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "w"),
                                                                      &std::fclose);
        ExportBook(book, maxPlies, file.get());
        std::fflush(file.get());
        return directory_.ReadFile("text");
    }

    // The kinds of faults, with how often they occur.
    std::string Faults(const std::string& bytes) {
        std::string text;
        for (const BookFaults& faults : CheckBook(Image(bytes)).Faults) {
            text +=
                (text.empty() ? "" : ", ") + std::string(faults.Kind) + " " + std::to_string(faults.Count);
            EXPECT_EQ(faults.Places.size(),
                      static_cast<size_t>(std::min<int64_t>(faults.Count, BookFaults::MOST_PLACES)));
        }
        return text;
    }

    // The good book with bytes changed.
    std::string With(size_t place, const std::string& bytes) const {
        std::string book = good_;
        return book.replace(place, bytes.size(), bytes);
    }

    TempDirectory directory_;
    std::string good_;
};

TEST_F(BookCheckTest, FindsEachFault) {
    const size_t index = 36, lists = index + 12 * 6, list = static_cast<uint8_t>(good_[index + 8]);
    ASSERT_EQ(list, lists) << "the first record has the first list";
    EXPECT_EQ(Faults(good_), "");
    EXPECT_EQ(Faults(""), "damaged header 1");
    EXPECT_EQ(Faults(With(3, "x")), "damaged header 1");
    EXPECT_EQ(Faults(With(24, "\2")), "damaged header 1");
    EXPECT_EQ(Faults(With(30, "\1")), "damaged header 1");
    EXPECT_EQ(Faults(With(35, "\xFF")), "damaged header 1");
    EXPECT_EQ(Faults(good_.substr(0, index + 13)).substr(0, 17), "truncated index 1");
    EXPECT_EQ(Faults(With(index, good_.substr(index + 12, 8))), "position that is there twice 1");
    EXPECT_EQ(Faults(With(index, good_.substr(index + 12, 12) + good_.substr(index, 12))),
              "position out of order 1");
    EXPECT_EQ(Faults(With(index + 9, "\1")), "list outside the file's part for lists 1");
    EXPECT_EQ(Faults(With(index + 8, "\x30")), "list outside the file's part for lists 1");
    EXPECT_EQ(Faults(good_.substr(0, good_.size() - 1)), "list outside the file's part for lists 1");
    EXPECT_EQ(Faults(With(index + 8, good_.substr(index + 20, 1))),
              "list that reaches into another 1, illegal move 3");
    EXPECT_EQ(CheckBook(Image(good_ + "tail")).UnusedBytes, 4);
}

TEST_F(BookCheckTest, FindsFaultsOfMoves) {
    // The initial position has the list of three moves.
    const size_t list = good_.find('\3', 36 + 12 * 6);
    EXPECT_EQ(Faults(With(list + 1, "\x40")), "impossible squares 1, illegal move 1");
    EXPECT_EQ(Faults(With(list + 1, "\x08\x08")), "impossible squares 1, illegal move 1");
    EXPECT_EQ(Faults(With(list + 1, "\x04")), "illegal move 1");
    EXPECT_EQ(Faults(With(list + 3, "\xFF")), "count that is too large 1");
    EXPECT_EQ(Faults(With(list + 3, "\xFF\xFF")), "") << "a removed move is no fault";
    EXPECT_EQ(Faults(With(list + 1, good_.substr(list + 5, 2))), "move that is there twice 1");
    const std::string many = With(list, std::string("\xFF", 1)) + std::string(1020, '\x08');
    EXPECT_NE(Faults(many), "");
}

TEST_F(BookCheckTest, ExportsEachPositionOnce) {
    const std::string text = Export(good_, 10);
    EXPECT_EQ(text.substr(text.find('\n') + 2),
              "1. Nf3  100 % (2 good, 0 bad)  [2]\n"
              " 1... e5  0 % (0 good, 2 bad)  [4]\n"
              "  2. e4  100 % (2 good, 0 bad)  [6]\n"
              "   2... Nc6  0 % (0 good, 2 bad)\n"
              "1. d4  100 % (2 good, 0 bad)\n"
              "1. e4  100 % (2 good, 0 bad)  [3]\n"
              " 1... e5  0 % (0 good, 2 bad)  [5]\n"
              "  2. Nf3  100 % (2 good, 0 bad)  see [6]\n"
              "\n# Reached: 6 of 6 positions.\n");
}

TEST_F(BookCheckTest, SurvivesDamage) {
    std::mt19937_64 random(9);
    for (int i = 0; i < 4000 / WORK_DIVISOR; ++i) {
        std::string bytes = good_.substr(0, random() % 4 == 0 ? random() % good_.size() : good_.size());
        for (uint64_t edits = random() % 5; edits > 0 && !bytes.empty(); --edits) {
            // The magic is seldom hit, or little else would be tried.
            const size_t place = random() % bytes.size();
            if (place >= 24 || random() % 16 == 0) bytes[place] = static_cast<char>(random());
        }
        const BookImage book = Image(bytes);
        CheckBook(book);
        if (book.HeaderFault() == nullptr) Export(bytes, 1 + static_cast<int>(random() % 400));
    }
}

// A book whose moves only go to and fro is no endless tree.
TEST_F(BookCheckTest, EndsInACircle) {
    BookOptions options;
    options.MinGames = 1;
    options.Depth = 1000;
    BookBuilder builder(options, Path());
    PgnGame game;
    game.Result = GameResult::DRAWN;
    for (int i = 0; i < 300; ++i) {
        for (const auto& [from, to] : {std::pair(6, 21), {62, 45}, {21, 6}, {45, 62}}) {
            game.Moves.push_back(BuildMove(from, to, KNIGHT));
        }
    }
    builder.AddGame(game);
    EXPECT_EQ(builder.Write().Positions, 4);
    EXPECT_EQ(BookTree(BookImage(Path()), BookTree::LONGEST_WAY).Places().size(), 4u);
    EXPECT_TRUE(CheckBook(BookImage(Path())).Faults.empty());
}

TEST_F(BookCheckTest, SaysWhatItCantRead) {
    EXPECT_THROW(BookImage(directory_.FilePath("missing")), BookError);
    EXPECT_THROW(BookImage{directory_.Path()}, BookError);
}

}  // namespace
