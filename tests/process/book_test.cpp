// The opening book and learning in the running program.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>

#include "tests/process/session.h"
#include "tests/support/bookwriter.h"

namespace {

const std::string START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w";
const std::string AFTER_F3 = "rnbqkbnr/pppppppp/8/8/8/5P2/PPPPP1PP/RNBQKBNR b";
const std::string AFTER_E5 = "rnbqkbnr/pppp1ppp/8/4p3/8/5P2/PPPPP1PP/RNBQKBNR w";
const std::string AFTER_G4 = "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b";

// The way to the shortest of mates.
BookWriter SmallBook(int version = 1) {
    BookWriter book(version);
    book.Add(START, {{"f2f3", 60, 40}, {"a2a3", 255, 255}});
    book.Add(AFTER_F3, {{"e7e5", 60, 40}});
    book.Add(AFTER_E5, {{"g2g4", 60, 40}});
    book.Add(AFTER_G4, {{"d8h4", 60, 40}});
    return book;
}

// An engine with a book of its own.
class BookSession {
  public:
    explicit BookSession(const BookWriter& book, const std::string& settings = "") {
        Directory.WriteFile("my book.kvb", book.Bytes());
        Program.emplace(settings + "OpeningsBook = " + Directory.FilePath("my book.kvb") +
                        "\nPondering = off\n");
    }

    // Good and bad results of the first move of a position.
    std::pair<int, int> Counts(const BookWriter& book, const std::string& fen) const {
        const std::string entry = Directory.ReadFile("my book.kvb").substr(book.ListPlace(fen) + 1, 4);
        return {static_cast<unsigned char>(entry[2]), static_cast<unsigned char>(entry[3])};
    }

    Session& operator*() { return *Program; }
    Session* operator->() { return &*Program; }

    TempDirectory Directory;
    std::optional<Session> Program;
};

using Counts = std::pair<int, int>;

TEST(BookPlayTest, PlaysFromTheBookWithoutThinking) {
    BookSession engine(SmallBook());
    const std::string listing = Join(engine->Ask("bkm"));
    EXPECT_EQ(listing.substr(listing.find('\n') + 1),
              "2 moves from current pos in book:\nf2f3 60% (not less than 50 game(s))\na2a3 -\n");
    EXPECT_EQ(Join(engine->Ask("xboard\nnew\nst 1\ngo")), "move f2f3\n") << "and no line of thought";
    EXPECT_EQ(Join(engine->Ask("e7e5")), "move g2g4\n");
    engine->Send("new\nst 1\na2a4");
    EXPECT_GT(engine->ReadUntil("move ").size(), 1u) << "out of book";
    engine->Send("new\nanalyze");
    EXPECT_FALSE(engine->ReadLine().starts_with("move")) << "to analyse is to think";
    engine->Send("exit");
}

TEST(BookPlayTest, AnswersUciFromTheBook) {
    BookSession engine(SmallBook());
    engine->Ask("uci");
    EXPECT_EQ(Join(engine->Ask("position startpos\ngo wtime 1000 btime 1000")), "bestmove f2f3\n");
    // A search that was asked for as such is one.
    for (const std::string go : {"go infinite\nstop", "go depth 3 searchmoves a2a4"}) {
        engine->Send("position startpos\n" + go);
        EXPECT_GT(engine->ReadUntil("bestmove").size(), 1u) << go;
    }
    EXPECT_EQ(Join(engine->Ask("position startpos\ngo ponder wtime 1000 btime 1000")), "")
        << "a book move waits for its turn, too";
    engine->Send("ponderhit");
    EXPECT_EQ(engine->ReadLine(), "bestmove f2f3");
    for (const std::string option : {"OwnBook value false", "MultiPV value 2"}) {
        engine->Send("setoption name OwnBook value true\nsetoption name MultiPV value 1\nsetoption name " +
                     option + "\nposition startpos\ngo depth 3");
        EXPECT_GT(engine->ReadUntil("bestmove").size(), 1u) << option;
    }
    const std::string lost = Join(engine->Ask("setoption name OpeningsBook value none.kvb\nbkm"));
    EXPECT_TRUE(lost.starts_with("Error opening \"none.kvb\"!\n")) << lost;
    EXPECT_TRUE(lost.ends_with("No book loaded...\n")) << lost;
}

TEST(BookPlayTest, Version0ShowsInTheSettings) {
    const BookWriter book = SmallBook(0);
    Engine engine(EnginePath(), "UseBookLearning = on\n");
    BookSession session(book, "UseBookLearning = on\n");
    const std::string report =
        WholeOutput("", "OpeningsBook = " + session.Directory.FilePath("my book.kvb") + "\n");
    EXPECT_NE(report.find("NG: Book learning not supported for book version 0\n4 nodes in openings book\n"),
              std::string::npos);
    EXPECT_NE(report.find("UseBookWeights = off\nUseBookLearning = off\n"), std::string::npos);
}

// The book beside the program serves whoever has none of his own.
TEST(BookPlayTest, FindsTheBookBesideTheProgram) {
    namespace fs = std::filesystem;
    const TempDirectory home;
    fs::copy_file(EnginePath(), home.FilePath("engine"));
    home.WriteFile("Book.kvb", SmallBook().Bytes());
    Engine engine(home.FilePath("engine"));
    const std::string report = Join(engine.ReadUntil("Pondering"));
    EXPECT_NE(report.find("\n4 nodes in openings book\n"), std::string::npos) << report;
    // The name that is announced as the default means that book.
    EXPECT_EQ(Join(engine.Ask("setoption name OpeningsBook value .\\book.kvb")).find("Error"),
              std::string::npos);
}

#ifdef KESTROVAN_DEFAULT_BOOK
TEST(BookPlayTest, TheBookOfTheProgramKnowsOpenings) {
    Session engine(std::string("OpeningsBook = ") + KESTROVAN_DEFAULT_BOOK +
                   "\nUseBookLearning = off\nPondering = off\n");
    // All that the book plays of itself, for as long as it knows the way, then what somebody else may begin
    // with.
    engine.Ask("new\nst 1");
    int moves = 0;
    while (Join(engine.Ask("bkm")).find("No moves") == std::string::npos) {
        const std::string said = Join(engine.Ask("go"));
        ASSERT_TRUE(said.starts_with("move ") && said.size() <= 11) << said;
        ++moves;
    }
    EXPECT_GE(moves, 8) << "plies of an opening";
    for (const char* line : {"g2g4", "f2f3\ne7e5\ng2g4", "e2e4\nf7f6", "a2a4", "e2e4\nc7c5", "b1a3"}) {
        const std::string listing = Join(engine.Ask("new\nforce\n" + std::string(line) + "\nbkm"));
        EXPECT_NE(listing.find(" in book:\n"), std::string::npos) << line << listing;
    }
}
#endif

TEST(BookLearningTest, WritesResultsIntoTheBook) {
    const BookWriter book = SmallBook();
    {
        // The engine is mated; only its own moves count, and not the first of all.
        BookSession engine(book);
        const std::string said = Join(engine->Ask("xboard\nnew\nforce\nf2f3\ne7e5\ng2g4\nd8h4\ngo\ngo"));
        EXPECT_NE(said.find("0-1 {Black mates}"), std::string::npos);
        EXPECT_EQ(engine.Counts(book, AFTER_E5), Counts(61, 41)) << "once a game";
        for (const auto& fen : {START, AFTER_F3, AFTER_G4})
            EXPECT_EQ(engine.Counts(book, fen), Counts(60, 40));
    }
    {
        // A search that sees the win.
        BookSession engine(book);
        engine->Send("xboard\nnew\nforce\nf2f3\ne7e5\ng2g4\na7a6\na2a3\nsd 6\ngo");
        engine->ReadUntil("move d8h4");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(62, 40));
        for (const auto& fen : {START, AFTER_E5, AFTER_G4})
            EXPECT_EQ(engine.Counts(book, fen), Counts(60, 40));
    }
    {
        // A game that is given up for a new one: the engine's last move is taken for unplayed.
        BookSession engine(book);
        EXPECT_EQ(Join(engine->Ask("xboard\nnew\nf2f3\ng2g4\nnew")), "move e7e5\nmove d8h4\n");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(61, 41));
        EXPECT_EQ(engine.Counts(book, AFTER_G4), Counts(60, 40));
        engine->Ask("f2f3\nreset");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(61, 41)) << "nothing before the move that was played";
    }
    {
        // Over UCI: a game, but not what is only looked at.
        BookSession engine(book);
        const std::string position = "position startpos moves f2f3 e7e5 g2g4 a7a6 a2a3\n";
        engine->Send("uci\n" + position + "go infinite");
        std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the mate is found at once
        engine->Send("stop");
        engine->ReadUntil("bestmove");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(60, 40));
        engine->Send(position + "go depth 6");
        engine->ReadUntil("bestmove");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(62, 40));
    }
}

// The first moves of either side.
std::vector<std::string> FirstMoves(char rank) {
    const bool isWhite = rank == '1';
    std::vector<std::string> moves;
    for (const char* step : {"23", "24"}) {
        for (char file = 'a'; file <= 'h'; ++file) {
            const char from = isWhite ? step[0] : static_cast<char>('9' - step[0] + '0');
            const char to = isWhite ? step[1] : static_cast<char>('9' - step[1] + '0');
            moves.push_back({file, from, file, to});
        }
    }
    for (const std::string leap : {"ba", "bc", "gf", "gh"}) {
        moves.push_back({leap[0], rank, leap[1], isWhite ? '3' : '6'});
    }
    return moves;
}

// A learning file by which every first move but one loses.
std::string FileAgainstAllBut(const std::string& best, Session& engine) {
    constexpr size_t TITLE = 23, RECORDS = 262167;
    std::string file = "Kestrovan learning file";
    file.resize(RECORDS);
    for (const std::string& move : FirstMoves('1')) {
        for (const std::string& reply : FirstMoves('8')) {
            const std::string keys = Join(engine.Ask("new\nforce\n" + move + "\n" + reply + "\nbkm"));
            const auto number = [&](const char* name) {
                return static_cast<uint32_t>(std::stoi(keys.substr(keys.find(name) + 9)));
            };
            const uint32_t key1 = number("nhash1 = "), key2 = number("nhash2 = ");
            // g1f3 or, where that is gone, b1c3: knights have the code 2.
            const bool isTaken = move == "g1f3" || move == "g1h3" || move == "f2f3";
            const uint32_t next = isTaken ? 1 | 18 << 6 | 2 << 12 : 6 | 21 << 6 | 2 << 12;
            const std::string place = LittleEndian(static_cast<uint32_t>(file.size()));
            size_t link = TITLE + 4 * (key1 & 0xFFFF);
            for (const std::string none = LittleEndian(0); file.substr(link, 4) != none;) {
                const std::string to = file.substr(link, 4);
                link = 20;
                for (size_t i = 0; i < 4; ++i)
                    link += static_cast<unsigned char>(to[i]) * (size_t{1} << (8 * i));
            }
            file.replace(link, 4, place);
            const int score = move == best ? 200 : -200;
            file += LittleEndian(6000) + LittleEndian(static_cast<uint32_t>(score)) + LittleEndian(next) +
                    LittleEndian(key1) + LittleEndian(key2) + LittleEndian(0);
        }
    }
    return file;
}

TEST(PositionLearningTest, GuidesTheSearch) {
    for (const std::string best : {"a2a3", "g1h3"}) {
        Session engine("UseLearningData = on\nPondering = off\n");
        engine.Directory().WriteFile("Learn.kv1", FileAgainstAllBut(best, engine));
        engine.Send("new\nsd 11\ngo");
        EXPECT_EQ(engine.ReadUntil("move ").back(), "move " + best);
    }
    Session engine("Learning = off\n");
    EXPECT_FALSE(std::filesystem::exists(engine.Directory().FilePath("Learn.kv1")));
}

}  // namespace
