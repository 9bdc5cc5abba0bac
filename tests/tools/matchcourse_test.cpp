#include "tools/matchcourse.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <stdexcept>

#include "tests/support/tempdirectory.h"

namespace {

// How a game has ended behind these moves; all of them must be legal, and none may come behind the end.
Ending EndingOf(const char* fen, const std::string& moves) {
    MatchCourse course({fen, {}});
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        EXPECT_EQ(course.End(), Ending::NONE) << fen << " before " << word;
        EXPECT_TRUE(course.Play(word)) << fen << ": " << word;
    }
    return course.End();
}

// Fifty moves of both sides with a rook that goes through 48 squares and a king that goes to and fro.
std::string LongWalk() {
    const auto square = [](int step) {
        const int place = step < 48 ? step : 94 - step, rank = place / 8;
        const int file = rank % 2 == 0 ? place % 8 : 7 - place % 8;
        return std::string{static_cast<char>('a' + file), static_cast<char>('1' + rank)};
    };
    std::string moves;
    for (int step = 0; step < 50; ++step) {
        moves += square(step) + square(step + 1) + (step % 2 == 0 ? " g8h8 " : " h8g8 ");
    }
    return moves;
}

TEST(MatchCourse, EndsByTheRules) {
    const std::string there = "g1f3 g8f6 f3g1 f6g8 ";
    EXPECT_EQ(EndingOf("", "f2f3 e7e5 g2g4 d8h4"), Ending::MATE);
    EXPECT_EQ(EndingOf("k7/8/K7/8/8/1Q6/8/8 w - - 0 1", "b3b6"), Ending::STALEMATE);
    EXPECT_EQ(EndingOf("", there), Ending::NONE);
    EXPECT_EQ(EndingOf("", there + there), Ending::REPETITION);
    // The right to castle is lost with the rook's first move: the first two positions don't come again.
    const std::string rooks = "h1g1 h8g8 g1h1 g8h8 ";
    const char* const castling = "4k2r/8/8/8/8/8/8/4K2R w Kk - 0 1";
    EXPECT_EQ(EndingOf(castling, rooks + rooks + "h1g1"), Ending::NONE);
    EXPECT_EQ(EndingOf(castling, rooks + rooks + "h1g1 h8g8"), Ending::REPETITION);
    EXPECT_EQ(EndingOf("4k3/8/8/8/8/3p4/4K3/6N1 w - - 0 1", "e2d3"), Ending::NO_MATERIAL);
    EXPECT_EQ(EndingOf("4k3/8/8/8/8/3p4/4K3/6R1 w - - 0 1", "e2d3"), Ending::NONE);
    EXPECT_EQ(EndingOf("K5k1/5ppp/8/8/8/8/8/R7 w - - 99 80", LongWalk()), Ending::FIFTY_MOVES);
}

TEST(MatchCourse, RefusesWhatIsNoMove) {
    MatchCourse course({"r3k3/1P6/8/8/8/8/8/R3K2R w KQ - 0 1", {}});
    const std::string before = course.PositionLine();
    for (const char* text : {"", "0000", "bestmove", "(none)", "e2e4", "e8e7", "b7a8", "b7a8k", "E1G1",
                             "e1g1q", "e1g1 ", "O-O", "e1h1", "a1a9", "h1h9"}) {
        EXPECT_FALSE(course.Play(text)) << text;
    }
    EXPECT_EQ(course.PositionLine(), before);
    for (const char* text : {"e1g1", "e8d7", "b7a8n"}) EXPECT_TRUE(course.Play(text)) << text;
    EXPECT_EQ(course.PositionLine(), before + " moves e1g1 e8d7 b7a8n");
    EXPECT_EQ(course.MoveText(), "1. O-O Kd7 2. bxa8=N\n");
}

TEST(MatchCourse, HasNoLongestGame) {
    MatchCourse course({});
    for (int i = 0; i < 300; ++i) {
        for (const char* move : {"g1f3", "g8f6", "f3g1", "f6g8"}) ASSERT_TRUE(course.Play(move)) << i;
    }
    EXPECT_EQ(course.Plies(), 1200);
    EXPECT_TRUE(course.MoveText().ends_with(" 600. Ng1 Ng8\n"));
}

TEST(MatchCourse, ReadsOpenings) {
    const TempDirectory directory;
    const auto read = [&](const std::string& name, const std::string& text) {
        directory.WriteFile(name, text);
        return ReadOpenings(directory.FilePath(name), 3);
    };
    const auto line = [](const Opening& opening) { return MatchCourse(opening).PositionLine(); };
    const std::string fen = "4k3/8/8/8/8/8/4P3/4K3 b - - ";

    const std::vector<Opening> positions =
        read("a.epd", "# none\n\n" + fen + "id \"x\";\r\n" + fen + "17 40\n");
    ASSERT_EQ(positions.size(), 2u);
    for (const Opening& opening : positions) EXPECT_EQ(line(opening), "position fen " + fen + "0 1");

    std::vector<Opening> games =
        read("a.pgn", "1. e4 e5 2. Nf3 Nc6 1-0\n\n[FEN \"" + fen + "3 9\"]\n\n1... Kd7 *\n\n1. d4 *\n");
    ASSERT_EQ(games.size(), 3u);
    EXPECT_EQ(line(games[0]), "position startpos moves e2e4 e7e5 g1f3");
    EXPECT_EQ(line(games[1]), "position fen " + fen + "0 1 moves e8d7");
    EXPECT_EQ(MatchCourse(games[1]).MoveText(), "1... Kd7\n");
    // Every order comes up, the same for the same seed.
    std::set<std::string> orders;
    for (uint32_t seed = 0; seed < 100; ++seed) {
        std::vector<Opening> shuffled = games, again = games;
        ShuffleOpenings(shuffled, seed);
        ShuffleOpenings(again, seed);
        std::string order;
        for (const Opening& opening : shuffled) order += line(opening);
        for (const Opening& opening : again) order.erase(0, line(opening).size());
        EXPECT_EQ(order, "");
        for (const Opening& opening : shuffled) order += line(opening);
        orders.insert(order);
    }
    EXPECT_EQ(orders.size(), 6u);

    EXPECT_THROW(read("b.epd", ""), std::runtime_error);
    EXPECT_THROW(read("b.epd", fen + "\n4k3/8/8/8/8/8/8/8 w - -\n"), std::runtime_error);
    EXPECT_THROW(read("b.pgn", "1. e4 e4 *\n"), std::runtime_error);
    EXPECT_THROW(ReadOpenings(directory.FilePath("missing"), 3), std::runtime_error);
}

}  // namespace
