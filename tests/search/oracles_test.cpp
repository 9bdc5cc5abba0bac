#include "search/oracles.h"

#include <gtest/gtest.h>

#include "book/booksettings.h"
#include "core/makemove.h"
#include "egtb/tablebases.h"
#include "eval/evaluate.h"
#include "search/plyinfo.h"
#include "search/search.h"
#include "tests/search/searchtest.h"

namespace {

constexpr int NOTHING = 12345;

int Answer, AnswerDepth;

class OraclesTest : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        TablebaseProber = [](int* score) { return (*score = Answer) != NOTHING; };
        LearnedProber = [](int* depth, int* score) {
            *depth = AnswerDepth;
            return (*score = Answer) != NOTHING;
        };
        FoundPieces = 5;
        EngineSide = WHITE;
        Answer = 0;
    }
    void TearDown() override {
        TablebaseProber = nullptr;
        LearnedProber = nullptr;
        FoundPieces = found_;
        UseLearningData = useLearning_;
        Ply = DrawScore = HistoryForgotten = 0;
        SearchTest::TearDown();
    }

  private:
    const int found_ = FoundPieces, useLearning_ = UseLearningData;
};

TEST_F(OraclesTest, TableValuesCountFromTheRootAndAreKept) {
    const struct {
        int Ply, Answer, Score;
    } rows[] = {{4, 32695, 32692}, {4, 32401, 32398}, {7, -32401, -32394}, {1, 0, 15}};
    LoadFEN("4k3/8/8/8/8/4p3/8/R3K3 b - -");
    DrawScore = -15;
    for (const auto& row : rows) {
        ClearHash();
        Node node{-100, 100, 300, 1, false};
        node.SearchFlags = 2;
        Ply = row.Ply;
        Answer = row.Answer;
        int score = 0;
        ASSERT_TRUE(ProbeTablebases(node, &score));
        EXPECT_EQ(score, row.Score);
        const HashEntry* entry = HashProbe();
        ASSERT_NE(entry, nullptr);
        EXPECT_TRUE(entry->Depth == 11820 && HashBound(*entry) == BOUND_EXACT && entry->SearchFlags == 2);
        EXPECT_EQ(HashScoreAt(*entry, row.Ply), row.Score);
    }
}

TEST_F(OraclesTest, TablesAreAskedWhereItPays) {
    const auto isAsked = [](int ply, int depth) {
        Ply = ply;
        int score = 0;
        return ProbeTablebases({-100, 100, depth, 1, false}, &score);
    };
    LoadFEN("3qk3/p7/8/8/8/8/P7/3QKN2 w - -");
    FoundPieces = 6;
    EXPECT_FALSE(isAsked(1, 300)) << "one man too many";
    FoundPieces = 7;
    EXPECT_TRUE(isAsked(5, 239));
    board.CastlingFlags = 1;
    EXPECT_FALSE(isAsked(1, 300)) << "tables know no castling";
    LoadFEN("r3k3/p7/8/8/8/8/P7/R3K3 w - -");
    EXPECT_FALSE(isAsked(5, 239)) << "obvious: little on the board";
    EXPECT_TRUE(isAsked(5, 240) && isAsked(1, 60)) << "but not that deep, or so near to the root";
    FoundPieces = 8;
    for (const char* move : {"h7h8n", "h7h8q"}) {
        LoadFEN("2nqk3/p6P/8/8/8/8/P7/3QK3 w - -");
        MakeMove(TextToMove(move), 1);
        EXPECT_EQ(isAsked(5, 239), move[4] == 'q') << move;
    }
}

TEST_F(OraclesTest, TwoPiecesAgainstOneAreLeftToTheSearchWhereItWins) {
    const struct {
        std::string Pair;
        std::string Beaten;  // of "qrbn"
    } rows[] = {{"QQ", "qrbn"}, {"QR", "qrbn"}, {"QB", "rbn"}, {"QN", "rbn"}, {"RR", "rbn"},
                {"RB", "bn"},   {"RN", "bn"},   {"BB", ""},    {"BN", ""},    {"NN", ""}};
    FoundPieces = 6;
    const auto isAsked = [](const std::string& white, const std::string& black, const char* pawn, char side) {
        LoadFEN(("4k3/" + black + "7/8/8/8/8/" + pawn + "7/" + white + "1K4 " + side + " - -").c_str());
        Ply = 5;
        int score = 0;
        return ProbeTablebases({-100, 100, 239, 1, false}, &score);
    };
    for (const auto& row : rows) {
        for (const char letter : std::string("qrbn")) {
            const std::string one(1, letter), label = row.Pair + " " + one;
            const bool isBeaten = row.Beaten.find(letter) != std::string::npos;
            const bool isAskedAhead = isAsked(row.Pair, one, "P", 'w');
            const bool isAhead = board.PieceMaterial[WHITE] > board.PieceMaterial[BLACK];
            EXPECT_EQ(isAskedAhead, isAhead && !isBeaten) << label;
            EXPECT_EQ(isAsked(row.Pair, one, "P", 'b'),
                      board.PieceMaterial[WHITE] < board.PieceMaterial[BLACK])
                << label;
            EXPECT_EQ(isAsked(row.Pair, one, "p", 'w'), isAhead) << label << ": the pawn may promote";
        }
    }
}

TEST_F(OraclesTest, LearnedScoresMustBeDeepEnough) {
    const auto isTaken = [](int depth, int answerDepth, int side, int played) {
        EngineSide = side;
        HistoryForgotten = played;
        AnswerDepth = answerDepth;
        int score = 0;
        return ProbeLearned({-100, 100, depth, 1, false}, &score);
    };
    LoadFEN("r2qk2r/8/8/8/8/8/8/R2QK2R w - -");
    UseLearningData = 0;
    EXPECT_FALSE(isTaken(361, 361, WHITE, 119));
    UseLearningData = 1;
    EXPECT_TRUE(isTaken(361, 361, WHITE, 119));
    EXPECT_FALSE(isTaken(361, 361, WHITE, 120));
    EXPECT_FALSE(isTaken(361, 361, BLACK, 0));
    EXPECT_FALSE(isTaken(361, 360, WHITE, 0));
    EXPECT_FALSE(isTaken(360, 600, WHITE, 0));
    LoadFEN("r2qk2r/8/8/8/8/8/8/3QKN2 w - -");
    EXPECT_FALSE(isTaken(361, 361, WHITE, 0)) << "little on the board";
}

TEST_F(OraclesTest, TheSearchBelievesTheTables) {
    for (const int answer : {0, NOTHING}) {
        Forget();
        Answer = answer;
        Search("4k3/8/8/8/8/8/8/R3K3 w Q -", 6);  // the right to castle ends with the first move
        EXPECT_TRUE(answer == 0 ? RootScore == 0 : RootScore > 200) << RootScore;
        EXPECT_EQ(TablebaseHits > 0, answer == 0);
    }
}

}  // namespace
