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
    // A book of six positions; the last is reached by two ways.
    void SetUp() override {
        CoreTest::SetUp();
        good_ = Built("e4 e5 Nf3 1-0 Nf3 e5 e4 Nc6 1-0 d4 1-0");
    }

    // The book of the games.
    std::string Built(const std::string& games) {
        directory_.WriteFile("games.pgn", games);
        const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(
            std::fopen(directory_.FilePath("games.pgn").c_str(), "rb"), &std::fclose);
        BookOptions options;
        options.MinGames = 1;
        BookBuilder builder(options, Path());
        PgnReader reader(file.get());
        PgnGame game;
        while (reader.Next(game) == PgnStatus::GAME) builder.AddGame(game);
        builder.Write();
        return directory_.ReadFile("Book.kvb");
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
    for (int i = 0; i < 1000 / WORK_DIVISOR; ++i) {
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
    std::string game;
    for (int i = 0; i < 300; ++i) game += "Nf3 Nf6 Ng1 Ng8 ";
    Built(game + "1-0");
    EXPECT_EQ(BookTree(BookImage(Path()), BookTree::LONGEST_WAY).Places().size(), 4u);
    EXPECT_TRUE(CheckBook(BookImage(Path())).Faults.empty());
}

// Keys know neither rights to castle nor en passant: what one way to a position allows, another may not.
TEST_F(BookCheckTest, TakesMovesThatOneWayAllows) {
    // In each the way that is found first has lost the right that the other game uses.
    const std::string wanderingKing = "e4 a6 Nf3 b6 Bc4 c6 Ke2 d6 Ke1 e6 Nc3 1-0 ";
    for (const std::string& games :
         {wanderingKing + wanderingKing + "e3 a6 e4 b6 Nf3 c6 Be2 d6 Bc4 e6 O-O 1-0",
          std::string("e4 d5 e5 e6 Nf3 1-0 e4 e6 e5 d5 exd6 1-0")}) {
        const std::string book = Built(games);
        EXPECT_EQ(Faults(book), "") << games;
        EXPECT_EQ(Export(book, 100).find("illegal"), std::string::npos) << games;
    }
}

TEST_F(BookCheckTest, SaysWhatItCantRead) {
    EXPECT_THROW(BookImage(directory_.FilePath("missing")), BookError);
    EXPECT_THROW(BookImage{directory_.Path()}, BookError);
}

}  // namespace
