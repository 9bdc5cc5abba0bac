#include "book/bookchoice.h"

#include <cstdlib>
#include <set>

#include "tests/book/booktest.h"

namespace {

constexpr char PROMOTION[] = "8/P6k/8/8/8/8/8/K7 w";

class BookChoiceTest : public BookTest {
  protected:
    void Write(const std::vector<WrittenMove>& moves, int version = 1, const char* fen = START) {
        BookWriter writer(version);
        writer.Add(fen, moves);
        Open(writer.Bytes());
    }

    // The moves that are played in many tries, "0000" for none.
    static std::set<std::string> Choices() {
        std::srand(1);
        std::set<std::string> moves;
        for (int i = 0; i < 300; ++i) moves.insert(MoveToText(ChooseBookMove()));
        return moves;
    }
};

using Moves = std::set<std::string>;

TEST_F(BookChoiceTest, KillModePlaysWhatHasScoredWell) {
    // Shares of 700, 640 and 600 in a thousand, and a removed move with the best name.
    const std::vector<WrittenMove> moves = {
        {"a2a3", 255, 255}, {"e2e4", 70, 30}, {"d2d4", 64, 36}, {"c2c4", 60, 40}};
    const struct {
        int Variety;
        Moves Expected;
    } rows[] = {{0, {"e2e4"}},
                {8, {"e2e4"}},
                {10, {"d2d4", "e2e4"}},
                {14, {"d2d4", "e2e4"}},
                {15, {"c2c4", "d2d4", "e2e4"}},
                {100, {"c2c4", "d2d4", "e2e4"}}};
    Write(moves);
    for (const auto& [variety, expected] : rows) {
        VarietyOfPlay = variety;
        EXPECT_EQ(Choices(), expected) << variety;
    }
    // A move without games counts as even.
    Write({{"e2e4", 0, 0}, {"d2d4", 56, 44}, {"c2c4", 44, 56}});
    VarietyOfPlay = 11;
    EXPECT_EQ(Choices(), (Moves{"d2d4", "e2e4"}));
    UseBookWeights = 0;
    EXPECT_EQ(Choices(), Moves{"e2e4"}) << "without weights the first move of the list";
    Write(moves);
    EXPECT_EQ(Choices(), Moves{"e2e4"}) << "and never a removed one";
}

TEST_F(BookChoiceTest, DiscoverModePlaysWhatIsLeastKnown) {
    BookLearningMode = 1;
    const struct {
        std::vector<WrittenMove> Entries;
        std::string Expected;
    } rows[] = {
        {{{"e2e4", 1, 1}, {"d2d4", 0, 0}, {"c2c4", 3, 0}}, "d2d4"},
        {{{"e2e4", 1, 3}, {"d2d4", 2, 2}, {"c2c4", 2, 2}}, "d2d4"},
        {{{"e2e4", 0, 2}, {"d2d4", 9, 9}}, "e2e4"},
        {{{"e2e4", 255, 255}, {"d2d4", 0, 9}}, "d2d4"},
        {{{"e2e4", 0, 0}, {"d2d4", 0, 0}}, "e2e4"},
    };
    for (const auto& [entries, expected] : rows) {
        Write(entries);
        EXPECT_EQ(Choices(), Moves{expected});
    }
}

TEST_F(BookChoiceTest, Version0IsUniform) {
    Write({{"a2a3", 255}, {"e2e4", 1}, {"d2d4", 254}, {"c2c4", 255}}, 0);
    EXPECT_EQ(Choices(), (Moves{"d2d4", "e2e4"}));
    EXPECT_EQ(Printed(ListBookMoves).substr(Printed(ListBookMoves).find('\n') + 1),
              "4 moves from current pos in book:\na2a3 255\ne2e4 1\nd2d4 254\nc2c4 255\n");
}

TEST_F(BookChoiceTest, PlaysOnlyWhatIsLegal) {
    const struct {
        const char* Fen;
        std::vector<WrittenMove> Entries;
        Moves Expected;
    } rows[] = {
        {START, {}, {"0000"}},
        {START, {{"e2e4", 255, 255}, {"d2d4", 255, 255}}, {"0000"}},
        {START, {{"e2e5", 9, 0}, {"e7e5", 9, 0}, {"e4e5", 9, 0}, {"??e5", 9, 0}, {"e2??", 9, 0}}, {"0000"}},
        {START, {{"e1g1", 9, 0}, {"e2e4", 5, 5}}, {"e2e4"}},
        {PROMOTION, {{"a7a8", 1, 0}}, {"a7a8q"}},
        {EN_PASSANT_BOTH_SIDES, {{"c5d6", 1, 0}}, {"c5d6"}},
        {CASTLING_ALL, {{"e1g1", 1, 0}}, {"e1g1"}},
        {CASTLING_IN_CHECK, {{"e8g8", 1, 0}}, {"0000"}},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        for (const int version : {0, 1}) {
            Write(row.Entries, version, row.Fen);
            // In version 0 no count of these rows means removed, but 255.
            EXPECT_EQ(Choices(), row.Expected) << row.Fen << " version " << version;
        }
    }
}

TEST_F(BookChoiceTest, ListsTheMoves) {
    const auto listing = [] {
        const std::string text = Printed(ListBookMoves);
        EXPECT_TRUE(text.starts_with("Current nhash1 = ")) << text;
        return text.substr(text.find('\n') + 1);
    };
    EXPECT_EQ(listing(), "No book loaded...\n");
    Write({{"e2e4", 70, 30}, {"d2d4", 0, 0}, {"a2a3", 255, 255}, {"g1f3", 2, 1}, {"b1c3", 0, 5}});
    EXPECT_EQ(listing(),
              "5 moves from current pos in book:\n"
              "e2e4 70% (not less than 50 game(s))\n"
              "d2d4 ?\n"
              "a2a3 -\n"
              "g1f3 66% (not less than 1 game(s))\n"
              "b1c3 0% (not less than 2 game(s))\n");
    Play({"e2e4"});
    EXPECT_EQ(listing(), "No moves from current pos in book\n");
}

}  // namespace
