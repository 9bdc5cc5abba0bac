#include "book/bookbuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "book/bookcheck.h"
#include "book/bookerror.h"
#include "book/bookkeys.h"
#include "core/board.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/san.h"
#include "tests/support/datafile.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

namespace {

class BookBuilderTest : public CoreTest {
  protected:
    // The bytes of the book that is made of the games and lines.
    std::string Build(const std::string& games, const BookOptions& options, const std::string& lines = "") {
        const std::string path = directory_.FilePath("Book.kvb");
        BookBuilder builder(options, path);
        Read(games, [&](const PgnGame& game) { builder.AddGame(game); });
        Read(lines, [&](const PgnGame& game) { builder.AddLine(game); });
        const BookTotals totals = builder.Write();
        runs_ = builder.RunsWritten();
        std::string bytes = directory_.ReadFile("Book.kvb");
        EXPECT_EQ(totals.Bytes, static_cast<int64_t>(bytes.size()));
        EXPECT_TRUE(CheckBook(BookImage(path)).Faults.empty());
        const std::filesystem::directory_iterator files(directory_.Path()), end;
        EXPECT_EQ(std::distance(files, end), 1) << "nothing temporary is left";
        return bytes;
    }

    TempDirectory directory_;
    int runs_ = 0;

  private:
    template <typename Add>
    void Read(const std::string& text, Add add) {
        if (text.empty()) return;
        const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), &std::fclose);
        std::fwrite(text.data(), 1, text.size(), file.get());
        std::rewind(file.get());
        PgnReader reader(file.get());
        PgnGame game;
        while (reader.Next(game) == PgnStatus::GAME) add(game);
    }
};

// A book's moves by position, each as "e2e4 statistic...", read by nothing but the layout.
using Positions = std::map<std::pair<int32_t, int32_t>, std::vector<std::string>>;

Positions ReadBook(const std::string& book) {
    const auto byte = [&](size_t place) {
        return static_cast<uint32_t>(static_cast<uint8_t>(book.at(place)));
    };
    const auto number = [&](size_t place) {
        return byte(place) + (byte(place + 1) << 8) + (byte(place + 2) << 16) + (byte(place + 3) << 24);
    };
    EXPECT_EQ(book.substr(0, 24), "~Kestrovan openings book");
    EXPECT_EQ(number(28), 0u);
    const uint32_t version = number(24), count = number(32);
    Positions positions;
    std::pair<int32_t, int32_t> last;
    for (size_t i = 0; i < count; ++i) {
        const size_t record = 36 + 12 * i;
        const std::pair key(static_cast<int32_t>(number(record)), static_cast<int32_t>(number(record + 4)));
        EXPECT_TRUE(i == 0 || last < key);
        last = key;
        const size_t list = number(record + 8), width = version == 0 ? 3 : 4;
        for (size_t entry = list + 1; entry < list + 1 + width * byte(list); entry += width) {
            std::string text = MoveToText(BuildMove(book.at(entry), book.at(entry + 1), KING));
            for (size_t rest = 2; rest < width; ++rest) text += " " + std::to_string(byte(entry + rest));
            positions[key].push_back(text);
        }
    }
    return positions;
}

// What the book has for the position behind the moves: entries in its order.
std::string MovesBehind(const std::string& book, const std::string& moves) {
    ResetBoard();
    for (const std::string& text : SplitWords(moves)) {
        Move move = NO_MOVE;
        EXPECT_EQ(ResolveSan(text.c_str(), &move), SAN_FOUND) << text;
        MakeMove(move, 1);
    }
    const BookKey key = CurrentBookKey();
    std::string text;
    const Positions positions = ReadBook(book);
    const auto found = positions.find({static_cast<int32_t>(key.Key1), static_cast<int32_t>(key.Key2)});
    if (found == positions.end()) return "none";
    for (const std::string& move : found->second) text += (text.empty() ? "" : ", ") + move;
    return text;
}

BookOptions EveryMove() {
    BookOptions options;
    options.MinGames = 1;
    return options;
}

std::string Repeat(const std::string& text, int count) {
    std::string all;
    while (count-- > 0) all += text + "\n";
    return all;
}

TEST_F(BookBuilderTest, CountsResultsForTheMover) {
    const std::string book = Build("e4 e5 1-0 e4 e5 0-1 e4 c5 1/2 d4 d5 1-0 d4 Nf6 *", EveryMove());
    EXPECT_EQ(MovesBehind(book, ""), "e2e4 3 3, d2d4 2 0");
    EXPECT_EQ(MovesBehind(book, "e4"), "e7e5 2 2, c7c5 1 1");
    EXPECT_EQ(MovesBehind(book, "d4"), "d7d5 0 2") << "a game without a result doesn't count";
    EXPECT_EQ(MovesBehind(book, "e4 e5"), "none");
    EXPECT_EQ(ReadBook(Build("", EveryMove())).size(), 0u);
}

TEST_F(BookBuilderTest, JoinsTranspositions) {
    const std::string book = Build("d4 d5 c4 e6 Nc3 1-0 c4 e6 d4 d5 Nf3 0-1", EveryMove());
    EXPECT_EQ(MovesBehind(book, "d4 d5 c4 e6"), "b1c3 2 0, g1f3 0 2");
}

TEST_F(BookBuilderTest, SaysWhyAGameIsLeftOut) {
    BookBuilder builder(EveryMove(), directory_.FilePath("Book.kvb"));
    PgnGame game;
    EXPECT_EQ(builder.AddGame(game), GameUse::NO_RESULT);
    game.Result = GameResult::DRAWN;
    EXPECT_EQ(builder.AddGame(game), GameUse::NO_MOVES);
    game.Moves = {BuildMove(12, 28, PAWN)};
    EXPECT_EQ(builder.AddGame(game), GameUse::USED);
    game.HasSetUp = true;
    EXPECT_EQ(builder.AddGame(game), GameUse::SET_UP);
    EXPECT_EQ(builder.Write().Moves, 1);
}

TEST_F(BookBuilderTest, Filters) {
    const std::string games = Repeat("e4 1-0", 12) + Repeat("d4 0-1", 6) + Repeat("c4 1/2", 2) + "f4 1-0";
    BookOptions options;
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 24 0, d2d4 0 12");
    options.MinGames = 2;
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 24 0, d2d4 0 12, c2c4 2 2");
    options.MinScore = 50;
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 24 0, c2c4 2 2");
    options.MinScore = 0;
    options.MinShare = 10;
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 24 0, d2d4 0 12");
    options.MinGames = 13;
    EXPECT_EQ(Build(games, options).size(), 36u) << "no position without moves";
    options = EveryMove();
    options.Depth = 2;
    const std::string shallow = Build("e4 e5 Nf3 1-0", options);
    EXPECT_EQ(MovesBehind(shallow, "e4"), "e7e5 0 2");
    EXPECT_EQ(MovesBehind(shallow, "e4 e5"), "none");
}

TEST_F(BookBuilderTest, ScalesAListAsAWhole) {
    const std::string games = Repeat("e4 1-0", 254) + Repeat("d4 0-1", 127) + "c4 1-0 f4 1/2-1/2";
    EXPECT_EQ(MovesBehind(Build(games, EveryMove()), ""), "e2e4 254 0, d2d4 0 127, c2c4 1 0, f2f4 1 1");
    BookOptions options = EveryMove();
    options.MaxCount = 10;
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 10 0, d2d4 0 5, c2c4 1 0, f2f4 1 1");
    EXPECT_EQ(MovesBehind(Build(Repeat("e4 1-0", 5), options), ""), "e2e4 10 0");
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        std::vector<MoveResults> moves(1 + random() % 5);
        const auto number = [&] { return static_cast<uint32_t>(random() >> (1 + random() % 31)); };
        for (MoveResults& move : moves) move = {number(), number()};
        const std::vector<MoveResults> old = moves;
        const auto limit = static_cast<uint32_t>(1 + random() % 254);
        ScaleResults(moves, limit);
        for (size_t j = 0; j < moves.size(); ++j) {
            EXPECT_LE(std::max(moves[j].Good, moves[j].Bad), limit);
            EXPECT_EQ(moves[j].Good + moves[j].Bad == 0, old[j].Good == 0 && old[j].Bad == 0);
            EXPECT_TRUE(old[j].Good < old[j].Bad || moves[j].Good >= moves[j].Bad);
        }
    }
}

TEST_F(BookBuilderTest, GivesWeightsInVersion0) {
    BookOptions options = EveryMove();
    options.Version = 0;
    const std::string games = Repeat("e4 1-0", 700) + Repeat("d4 0-1", 298) + "c4 1/2 f4 1/2";
    EXPECT_EQ(MovesBehind(Build(games, options), ""), "e2e4 70, d2d4 30, c2c4 1, f2f4 1");
    options.MinGames = 2;
    EXPECT_EQ(MovesBehind(Build("e4 1-0 d4 1-0", options, "e4 * d4 * c4 1-0"), ""),
              "c2c4 33, d2d4 33, e2e4 33");
}

TEST_F(BookBuilderTest, TakesLinesWhereGamesHaveNoMove) {
    BookOptions options;
    const std::string games = Repeat("e4 e5 1-0", 3) + "e4 c5 0-1 d4 d5 1-0 d4 d5 0-1";
    const std::string book = Build(games, options, "e4 c5 Nf3 * d4 d5 c4 * d4 Nf6 1-0 f4 *");
    EXPECT_EQ(MovesBehind(book, ""), "e2e4 6 2");
    EXPECT_EQ(MovesBehind(book, "e4"), "e7e5 0 6") << "not the line's c7c5";
    EXPECT_EQ(MovesBehind(book, "e4 c5"), "g1f3 0 0");
    EXPECT_EQ(MovesBehind(book, "d4"), "d7d5 0 0, g8f6 0 0")
        << "games that the filter has refused leave no result";
    EXPECT_EQ(MovesBehind(book, "d4 d5"), "c2c4 0 0");
    const std::string marked = Build("", options, "f3! e5 g4? Qh4 * a4 e5 h4?? d5 Na3?! *");
    EXPECT_EQ(MovesBehind(marked, ""), "a2a4 0 0, f2f3 0 0");
    EXPECT_EQ(MovesBehind(marked, "f3 e5"), MovesBehind(marked, "a4 e5")) << "mistakes are not played";
    EXPECT_EQ(MovesBehind(marked, "f3 e5 g4"), "d8h4 0 0") << "but answered";
    EXPECT_EQ(MovesBehind(marked, "a4 e5 h4 d5"), "b1a3 0 0");
}

// Random games, many of which begin alike.
std::string RandomGames(int games, uint64_t seed) {
    std::mt19937_64 random(seed);
    std::string text;
    for (int i = 0; i < games; ++i) {
        ResetBoard();
        for (int ply = 0; ply < 12; ++ply) {
            const std::vector<Move> legal = LegalMoves();
            if (legal.empty()) break;
            const Move move = legal[random() % std::min<size_t>(legal.size(), ply < 4 ? 2 : 40)];
            text += MoveToText(move) + std::string(" ");
            MakeMove(move, 1);
        }
        text += random() % 2 == 0 ? "1-0\n" : "1/2\n";
    }
    return text;
}

// However little memory there is, the book is the same, also when runs have to be merged in several rounds.
TEST_F(BookBuilderTest, NeedsNoMemory) {
    const std::string games = RandomGames(200, 5), lines = RandomGames(20, 6);
    BookOptions options = EveryMove();
    const std::string book = Build(games, options, lines);
    EXPECT_EQ(runs_, 0);
    int64_t moves = 0;
    for (const auto& [key, entries] : ReadBook(book)) moves += static_cast<int64_t>(entries.size());
    EXPECT_GT(moves, 1000);
    for (const int records : {2, 3, 7, 64, 500}) {
        options.MemoryBytes = records * static_cast<int64_t>(sizeof(MoveRecord));
        EXPECT_EQ(Build(games, options, lines), book) << records;
        EXPECT_GT(runs_, records < 64 ? 64 : 1) << records;
    }
}

TEST_F(BookBuilderTest, TellsWhatItCantWrite) {
    BookOptions options = EveryMove();
    options.MemoryBytes = 1;
    PgnGame game;
    game.Result = GameResult::DRAWN;
    game.Moves = {BuildMove(12, 28, PAWN)};
    BookBuilder nowhere(options, directory_.FilePath("missing/Book.kvb"));
    nowhere.AddGame(game);
    EXPECT_THROW(nowhere.Write(), BookError);
    std::filesystem::create_directory(directory_.FilePath("Folder"));
    std::filesystem::create_directory(directory_.FilePath("Folder/inside"));
    for (const std::string& path : {directory_.FilePath("Folder"), std::string("/dev/null")}) {
        EXPECT_THROW(BookBuilder(options, path), BookError) << path;
    }
    const std::filesystem::directory_iterator files(directory_.Path()), end;
    EXPECT_EQ(std::distance(files, end), 1) << "nothing temporary is left";
}

TEST_F(BookBuilderTest, FollowsALinkToTheBook) {
    directory_.WriteFile("real.kvb", "old");
    std::filesystem::create_symlink("real.kvb", directory_.FilePath("link.kvb"));
    PgnGame game;
    game.Result = GameResult::DRAWN;
    game.Moves = {BuildMove(12, 28, PAWN)};
    BookBuilder builder(EveryMove(), directory_.FilePath("link.kvb"));
    builder.AddGame(game);
    builder.Write();
    EXPECT_TRUE(std::filesystem::is_symlink(directory_.FilePath("link.kvb")));
    EXPECT_TRUE(directory_.ReadFile("real.kvb").starts_with("~Kestrovan openings book"));
}

}  // namespace
