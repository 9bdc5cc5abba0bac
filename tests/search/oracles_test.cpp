#include "search/oracles.h"

#include <gtest/gtest.h>

#include "book/book.h"
#include "core/makemove.h"
#include "egtb/tablebases.h"
#include "eval/evaluate.h"
#include "search/plyinfo.h"
#include "search/search.h"
#include "tests/search/searchtest.h"

namespace {

int Answer, AnswerDepth, Asked;

class OraclesTest : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        TablebaseProber = [](int* score) {
            ++Asked;
            *score = Answer;
            return Answer != NOTHING;
        };
        LearnedProber = [](int* depth, int* score) {
            ++Asked;
            *depth = AnswerDepth;
            *score = Answer;
            return Answer != NOTHING;
        };
        FoundPieces = 5;
        UseLearningData = 1;
        EngineSide = WHITE;
        Answer = 0;
        AnswerDepth = 600;
    }
    void TearDown() override {
        TablebaseProber = nullptr;
        LearnedProber = nullptr;
        FoundPieces = found_;
        UseLearningData = useLearning_;
        Ply = DrawScore = 0;
        SearchTest::TearDown();
    }

    static constexpr int NOTHING = 12345;

  private:
    const int found_ = FoundPieces, useLearning_ = UseLearningData;
};

TEST_F(OraclesTest, TableValuesCountFromTheRootAndAreKept) {
    const struct {
        int Ply, Answer, Score;
    } rows[] = {{4, 32695, 32692}, {4, -32690, -32686}, {4, 32401, 32398}, {7, -32401, -32394}, {1, 0, 15}};
    LoadFEN("4k3/8/8/8/8/4p3/8/R3K3 b - -");
    for (const auto& row : rows) {
        ClearHash();
        Node node{-100, 100, 300, 1, false};
        node.SearchFlags = 2;
        DrawScore = -15;
        Ply = row.Ply;
        Answer = row.Answer;
        int score = 0;
        const int hits = TablebaseHits;
        ASSERT_TRUE(ProbeTablebases(node, &score));
        EXPECT_EQ(score, row.Score);
        EXPECT_EQ(TablebaseHits, hits + 1);
        const HashEntry* entry = HashProbe();
        ASSERT_NE(entry, nullptr);
        EXPECT_TRUE(entry->Depth == 11820 && HashBound(*entry) == BOUND_EXACT && entry->SearchFlags == 2);
        EXPECT_EQ(HashScoreAt(*entry, row.Ply), row.Score);
    }
}

TEST_F(OraclesTest, TablesAreAskedWhereItPays) {
    constexpr char EVEN[] = "r3k3/p7/8/8/8/8/P7/R3K3 w - -", MORE[] = "3qk3/p7/8/8/8/8/P7/3QKN2 w - -";
    const struct {
        const char *Fen, *Before;
        int Ply, Depth;
        unsigned Castling;
        int Found;
        bool IsAsked;
    } rows[] = {
        {MORE, "", 5, 239, 0, 7, true},
        {MORE, "", 5, 239, 0, 6, false},                              // one man too many
        {MORE, "", 5, 239, 1, 7, false},                              // tables know no castling
        {EVEN, "", 5, 239, 0, 6, false},                              // obvious: little on the board
        {EVEN, "", 5, 240, 0, 6, true},                               // but not that deep,
        {EVEN, "", 1, 60, 0, 6, true},                                // or so near to the root
        {"3qk3/p7/8/8/8/8/P7/3QKR2 w - -", "", 5, 239, 0, 7, false},  // a rook more
        {"2nqk3/p6P/8/8/8/8/P7/3QK3 w - -", "h7h8n", 5, 239, 0, 8, false},
        {"2nqk3/p6P/8/8/8/8/P7/3QK3 w - -", "h7h8q", 5, 239, 0, 8, true},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        if (*row.Before != '\0') MakeMove(TextToMove(row.Before), 1);
        board.CastlingFlags = row.Castling;
        FoundPieces = row.Found;
        Ply = row.Ply;
        Asked = 0;
        int score = 0;
        EXPECT_EQ(ProbeTablebases({-100, 100, row.Depth, 1, false}, &score), row.IsAsked)
            << row.Fen << " " << row.Depth << " " << row.Ply;
        EXPECT_EQ(Asked, row.IsAsked);
    }
}

TEST_F(OraclesTest, LearnedScoresMustBeDeepEnough) {
    constexpr char FULL[] = "r2qk2r/8/8/8/8/8/8/R2QK2R w - -", LITTLE[] = "r2qk2r/8/8/8/8/8/8/3QKN2 w - -";
    const struct {
        const char* Fen;
        int Depth, AnswerDepth, Side, Played;
        bool IsTaken;
    } rows[] = {
        {FULL, 361, 361, WHITE, 0, true},    {FULL, 360, 600, WHITE, 0, false},
        {FULL, 361, 360, WHITE, 0, false},   {FULL, 400, 600, BLACK, 0, false},
        {LITTLE, 400, 600, WHITE, 0, false}, {FULL, 400, 600, WHITE, 119, true},
        {FULL, 400, 600, WHITE, 120, false},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        EngineSide = row.Side;
        HistoryForgotten = row.Played;
        AnswerDepth = row.AnswerDepth;
        Answer = 77;
        int score = 0;
        for (UseLearningData = 0; UseLearningData < 2; ++UseLearningData) {
            EXPECT_EQ(ProbeLearned({-100, 100, row.Depth, 1, false}, &score), row.IsTaken && UseLearningData)
                << row.Fen << " " << row.Depth << " " << row.Played;
        }
        UseLearningData = 1;
        EXPECT_TRUE(!row.IsTaken || score == 77);
    }
    HistoryForgotten = 0;
}

TEST_F(OraclesTest, TheSearchBelievesTheTables) {
    for (const int answer : {0, NOTHING}) {
        Forget();
        Answer = answer;
        Search("4k3/8/8/8/8/8/8/R3K3 w - -", 6);
        EXPECT_TRUE(answer == 0 ? RootScore == 0 : RootScore > 200) << RootScore;
        EXPECT_EQ(TablebaseHits > 0, answer == 0);
    }
}

}  // namespace
