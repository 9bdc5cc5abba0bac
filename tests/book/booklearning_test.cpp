#include "book/booklearning.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/board.h"
#include "tests/book/booktest.h"

namespace {

using ResultCounts = std::vector<std::pair<int, int>>;  // good and bad

class BookLearningTest : public BookTest {
  protected:
    // The counts in the file of the moves of a position.
    ResultCounts Counts(const BookWriter& writer, const std::string& fen) const {
        const std::string bytes = Contents();
        size_t place = writer.ListPlace(fen);
        ResultCounts counts;
        for (int left = bytes[place++]; left > 0; --left, place += 4) {
            const auto count = [&](size_t i) { return static_cast<unsigned char>(bytes[place + i]); };
            counts.emplace_back(count(2), count(3));
        }
        return counts;
    }
};

TEST_F(BookLearningTest, CountsResults) {
    const struct {
        std::vector<WrittenMove> Entries;
        BookResult Result;
        ResultCounts Expected;
    } rows[] = {
        {{{"e2e4", 7, 3}}, LINE_WENT_WELL, {{9, 3}}},
        {{{"e2e4", 7, 3}}, LINE_WENT_BADLY, {{7, 5}}},
        {{{"e2e4", 7, 3}}, GAME_ENDED, {{8, 4}}},
        {{{"e2e4", 252, 3}}, LINE_WENT_WELL, {{254, 3}}},
        {{{"e2e4", 254, 253}}, GAME_ENDED, {{2 * 255 / 3, 2 * 254 / 3}}},
        // The whole list shrinks with a move that would count too far, but for what has no count.
        {{{"d2d4", 90, 10}, {"e2e4", 253, 31}, {"c2c4", 0, 0}, {"g1f3", 255, 255}, {"b1c3", 1, 254}},
         LINE_WENT_WELL,
         {{60, 6}, {170, 20}, {0, 0}, {255, 255}, {0, 169}}},
        // The first live entry of the move; others of it and removed ones stay.
        {{{"e2e4", 255, 255}, {"e2e4", 1, 1}, {"e2e4", 4, 4}}, LINE_WENT_WELL, {{255, 255}, {3, 1}, {4, 4}}},
        {{{"d2d4", 5, 5}, {"e2e3", 5, 5}}, LINE_WENT_WELL, {{5, 5}, {5, 5}}},
        {{}, LINE_WENT_WELL, {}},
    };
    for (const auto& row : rows) {
        BookWriter writer;
        writer.Add(START, row.Entries);
        writer.Add(CASTLING_ALL, {{"e2e4", 11, 12}});
        Open(writer.Bytes());
        UpdateBookMove(row.Result, TextToMove("e2e4"));
        EXPECT_EQ(Counts(writer, START), row.Expected);
        EXPECT_EQ(Counts(writer, CASTLING_ALL), (ResultCounts{{11, 12}}));
    }
}

TEST_F(BookLearningTest, Version0NeverLearns) {
    BookWriter writer(0);
    writer.Add(START, {{"e2e4", 7}});
    Open(writer.Bytes());
    UpdateBookMove(LINE_WENT_WELL, TextToMove("e2e4"));
    EXPECT_EQ(Contents(), writer.Bytes());
}

// The engine's own moves of a game: every second one, backwards from its turn; not the first of all.
TEST_F(BookLearningTest, LearnsFromAWholeGame) {
    constexpr const char* MOVES[] = {"e2e4", "e7e5", "g1f3", "b8c6", "f1b5", "a7a6", "b5a4"};
    for (const size_t length : {0u, 1u, 2u, 3u, 6u, 7u}) {
        BookWriter writer;
        std::vector<std::string> fens;
        ResetBoard();
        for (const char* move : MOVES) {
            fens.push_back(TextOfBoard());
            writer.Add(fens.back(), {{move, 10, 10}});
            Play({move});
        }
        Open(writer.Bytes());
        ResetBoard();
        Play({MOVES, MOVES + length});
        const Board before = board;
        ResetBookGame();
        ASSERT_TRUE(IsBookLearningDue());
        LearnBookGame(LINE_WENT_BADLY);
        EXPECT_FALSE(IsBookLearningDue()) << "once a game";
        EXPECT_TRUE(board == before);
        EXPECT_EQ(HistoryLength, static_cast<int>(length));
        for (size_t i = 0; i < fens.size(); ++i) {
            const bool isOwn = i > 0 && i < length && (length - i) % 2 == 0;
            EXPECT_EQ(Counts(writer, fens[i])[0].second, isOwn ? 12 : 10) << length << " " << MOVES[i];
        }
        for (size_t i = 0; i < length; ++i) EXPECT_STREQ(MoveToText(History[i].Move), MOVES[i]);
    }
}

TEST_F(BookLearningTest, IsDueOncePerGameOfALearningBook) {
    EXPECT_FALSE(IsBookLearningDue());
    ResetBookGame();
    EXPECT_FALSE(IsBookLearningDue()) << "no book";
    Open(BookWriter().Bytes());
    EXPECT_TRUE(IsBookLearningDue());
    UseBookLearning = 0;
    EXPECT_FALSE(IsBookLearningDue());
}

// Two programs that share a book lose none of each other's results.
TEST_F(BookLearningTest, SharesTheBook) {
    constexpr int GAMES = 100, PROGRAMS = 2;
    BookWriter writer;
    Play({"e2e4"});
    const std::string fen = TextOfBoard();
    writer.Add(fen, {{"c7c5", 1, 2}, {"e7e5", 0, 0}});
    Play({"e7e5", "g1f3"});
    Open(writer.Bytes());
    CloseBook();
    for (int program = 0; program < PROGRAMS; ++program) {
        if (fork() != 0) continue;
        std::freopen("/dev/null", "w", stdout);
        OpenBook(Path());
        for (int i = 0; i < GAMES; ++i) {
            // While the other one writes, it may take another try.
            for (ResetBookGame(); IsBookLearningDue();) LearnBookGame(GAME_ENDED);
        }
        _exit(0);
    }
    for (int program = 0; program < PROGRAMS; ++program) {
        int status = -1;
        wait(&status);
        EXPECT_EQ(status, 0);
    }
    constexpr int SUM = GAMES * PROGRAMS;
    EXPECT_EQ(Counts(writer, fen), (ResultCounts{{1, 2}, {SUM, SUM}}));
}

// A kill at any moment changes nothing but the counts of moves.
TEST_F(BookLearningTest, SurvivesAKill) {
    BookWriter writer;
    std::vector<WrittenMove> moves = {{"e2e4", 250, 250}};
    for (const char* square : {"a2a3", "b2b3", "c2c3", "d2d3"}) moves.push_back({square, 200, 100});
    writer.Add(START, moves);
    const std::string bytes = writer.Bytes();
    for (int round = 0; round < 5; ++round) {
        Open(bytes);
        const pid_t worker = fork();
        if (worker == 0) {
            for (int i = 0;; ++i)
                UpdateBookMove(i % 2 == 0 ? LINE_WENT_WELL : LINE_WENT_BADLY, TextToMove("e2e4"));
        }
        while (Contents() == bytes) usleep(100);  // until it is at work
        usleep(static_cast<useconds_t>(700 * round));
        kill(worker, SIGKILL);
        waitpid(worker, nullptr, 0);
        const std::string after = Contents();
        ASSERT_EQ(after.size(), bytes.size());
        const size_t list = writer.ListPlace(START) + 1;
        for (size_t i = 0; i < bytes.size(); ++i) {
            const bool isCount = i >= list && (i - list) % 4 >= 2;
            ASSERT_TRUE(isCount || after[i] == bytes[i]) << i;
        }
        EXPECT_EQ(Open(after), "1 nodes in openings book\n");
        UpdateBookMove(LINE_WENT_WELL, TextToMove("e2e4"));
        EXPECT_NE(Contents(), after) << "the dead hold no lock";
    }
}

}  // namespace
