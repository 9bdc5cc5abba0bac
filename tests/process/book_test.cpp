// The opening book and learning in the running program.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
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
        Program.emplace("Pondering = off\n" + settings +
                        "OpeningsBook = " + Directory.FilePath("my book.kvb"));
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

// The book beside the program serves whoever has none of his own, and decides what the settings are.
TEST(BookPlayTest, FindsTheBookBesideTheProgram) {
    namespace fs = std::filesystem;
    if (std::getenv("KESTROVAN_ENGINE") != nullptr) GTEST_SKIP() << "another program may not be one file";
    for (const int version : {0, 1}) {
        const TempDirectory home;
        fs::copy_file(EnginePath(), home.FilePath("engine"));
        home.WriteFile("Book.kvb", SmallBook(version).Bytes());
        Engine engine(home.FilePath("engine"), "UseBookLearning = on\nUseBookWeights = on\n");
        const std::string report = Join(engine.ReadUntil("Pondering"));
        EXPECT_NE(report.find("\n4 nodes in openings book\n"), std::string::npos) << report;
        EXPECT_EQ(report.find("\nNG: Book learning not supported for book version 0\n") != std::string::npos,
                  version == 0);
        const std::string is = version == 0 ? "off\n" : "on\n";
        EXPECT_NE(report.find("UseBookWeights = " + is + "UseBookLearning = " + is), std::string::npos)
            << report;
        // The name that is announced as the default means that book.
        const std::string said = Join(engine.Ask("setoption name OpeningsBook value .\\book.kvb"));
        EXPECT_EQ(said.find("Error"), std::string::npos);
    }
}

// Nothing to think about while the opponent's move is in the book, too.
TEST(BookPlayTest, PondersBehindTheBookOnly) {
    BookSession engine(SmallBook(), "Pondering = on\n");
    EXPECT_EQ(Join(engine->Ask("xboard\nhard\nnew\nst 1\nf2f3")), "move e7e5\n");
    EXPECT_TRUE(Join(engine->Ask("g2g4")).starts_with("move d8h4\n"));
    engine->Send("new\nst 1\na2a4");
    EXPECT_GT(engine->ReadUntil("Hint: ").size(), 1u);
}

#ifdef KESTROVAN_DEFAULT_BOOK
TEST(BookPlayTest, TheBookOfTheProgramKnowsOpenings) {
    Session engine(std::string("OpeningsBook = ") + KESTROVAN_DEFAULT_BOOK +
                   "\nUseBookLearning = off\nPondering = off\n");
    const std::string spanish =
        "e2e4\ne7e5\ng1f3\nb8c6\nf1b5\na7a6\nb5a4\ng8f6\ne1g1\nf8e7\nf1e1\nb7b5\na4b3";
    const std::string queensGambit = "d2d4\nd7d5\nc2c4\ne7e6\nb1c3\ng8f6\nc1g5\nf8e7\ne2e3\ne8g8";
    for (const std::string& line : {spanish, queensGambit}) {
        for (size_t end = line.find('\n'); end != std::string::npos; end = line.find('\n', end + 1)) {
            const std::string said = Join(engine.Ask("new\nforce\nst 1\n" + line.substr(0, end) + "\ngo"));
            EXPECT_TRUE(said.starts_with("move ") && said.size() <= 11) << line.substr(0, end) << said;
        }
    }
    // What somebody else may begin with.
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
        engine->Ask("new\nforce\nf2f3\ne7e5\ng2g4\nnew");
        EXPECT_EQ(engine.Counts(book, AFTER_E5), Counts(60, 40)) << "a game that was entered, not played";
    }
    {
        // Over UCI: a game, but not what is only looked at, or pondered on in vain.
        BookSession engine(book);
        const std::string position = "position startpos moves f2f3 e7e5 g2g4 a7a6 a2a3\n";
        engine->Ask("uci\nucinewgame");
        for (const std::string go : {"go infinite", "go ponder wtime 9000 btime 9000"}) {
            engine->Send(position + go);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the mate is found at once
            engine->Send("stop");
            engine->ReadUntil("bestmove");
            EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(60, 40)) << go;
        }
        engine->BestMove(position + "go depth 6");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(62, 40));
        engine->BestMove("position startpos moves f2f3 e7e5 g2g4\ngo depth 3");
        engine->BestMove(position + "go depth 6");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(62, 40))
            << "the same game after a move was taken back";
        engine->BestMove("ucinewgame\n" + position + "go depth 6");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(64, 40));
        // One that ends in the book counts as drawn when the next begins.
        engine->BestMove("ucinewgame\nposition startpos moves f2f3 e7e5 g2g4\ngo depth 6");
        engine->Ask("ucinewgame");
        EXPECT_EQ(engine.Counts(book, AFTER_F3), Counts(65, 41));
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
}

// The engine is made to lose its queen, and remembers the position before.
TEST(PositionLearningTest, RemembersAMistake) {
    constexpr size_t RECORDS = 262167;
    Session engine("Learning = on\nLogLearningIntoFile = on\n");
    const TempDirectory& directory = engine.Directory();
    EXPECT_EQ(directory.ReadFile("Learn.kv1").size(), RECORDS);
    engine.Ask("uci\nucinewgame");
    std::string game = "position startpos moves e2e4";
    game += " " + engine.BestMove(game + "\ngo depth 9 searchmoves e7e5 e7e6");
    game += " g1f3";
    // What is pondered on in vain does not count.
    engine.Send(game + "\ngo ponder depth 9");
    engine.BestMove("stop");
    const std::string blunder = engine.BestMove(game + "\ngo depth 9 searchmoves d8g5 d8h4");
    engine.Ask("");
    EXPECT_EQ(directory.ReadFile("Learn.kv1").size(), RECORDS) << "the loss is not confirmed yet";
    engine.BestMove(game + " " + blunder + " f3" + blunder.substr(2) + "\ngo depth 9");
    engine.Ask("");
    EXPECT_EQ(directory.ReadFile("Learn.kv1").size(), RECORDS + 24);
    EXPECT_TRUE(directory.ReadFile("learn.log").starts_with("0\tAdd: Depth = 510\tOldEvaluation = "));
}

}  // namespace
