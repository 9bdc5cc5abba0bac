#include "eval/weights.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"
#include "tests/support/tempdirectory.h"

namespace {

class WeightsTest : public EvalTest {
  protected:
    void SetUp() override {
        EvalTest::SetUp();
        UsePawnHash(1000);
        for (const char* move : {"e2e4", "d7d5", "g1f3", "a7a6", LAST_MOVE}) MakeMove(TextToMove(move), 1);
    }

    // Doubles pawns, so that there is a pawn structure to judge; before it no side is the image of the other.
    static constexpr const char* LAST_MOVE = "e4d5";

    // The weights in force as their file.
    std::string Written() const {
        EXPECT_TRUE(WriteWeights(directory_.FilePath("written").c_str()));
        return directory_.ReadFile("written");
    }

    bool Load(const std::string& text) const {
        directory_.WriteFile("weights", text);
        return LoadWeights(directory_.FilePath("weights").c_str());
    }

    TempDirectory directory_;
};

TEST_F(WeightsTest, AreReadBackAsWritten) {
    const std::string defaults = Written();
    const int score = Evaluation();
    std::string changed;
    int count = 0;
    for (const std::string& value : SplitWords(defaults))
        changed += std::to_string(std::stoi(value) + 10 + count++ % 9 * 10) + "\n";
    EXPECT_EQ(count, 327);
    ASSERT_TRUE(Load(changed));
    EXPECT_EQ(Written(), changed);
    const int changedScore = Evaluation();
    EXPECT_NE(changedScore, score) << "the sums on the board follow";
    ClearPawnHash();
    EXPECT_EQ(Evaluation(), changedScore) << "what was kept about the pawns is forgotten";
    UnmakeMove();
    MakeMove(TextToMove(LAST_MOVE), 1);
    EXPECT_EQ(Evaluation(), changedScore) << "the sums of the whole game follow";
    ASSERT_TRUE(Load(defaults));
    EXPECT_EQ(Evaluation(), score);
}

TEST_F(WeightsTest, AreKnownByTheirNames) {
    const WeightValues defaults = DefaultWeights();
    EXPECT_EQ(CurrentWeights(), defaults);
    std::set<std::string> names;
    for (int place = 0; place < WEIGHT_COUNT; ++place) names.insert(WeightName(place));
    EXPECT_EQ(names.size(), defaults.size());
    for (const auto& [name, value] : {std::pair{"ManWorth[4].Ending", ManWorth[4].Ending},
                                      {"HangingPawn.Opening", HangingPawn.Opening},
                                      {"BishopPair[1]", BishopPair[1]},
                                      {"Space", Space},
                                      {"PsqKingEnding[2]", PsqKingEnding.Advance}}) {
        int place = 0;
        while (WeightName(place) != name) ++place;
        EXPECT_EQ(defaults[static_cast<size_t>(place)], value) << name;
        const std::string whole = name;
        for (const char end : {'.', '['}) EXPECT_TRUE(IsWeightOf(place, whole.substr(0, whole.find(end))));
        EXPECT_FALSE(IsWeightOf(place, whole + "x"));
        EXPECT_FALSE(IsWeightOf(place, whole.substr(0, 3)));
    }
}

// Tables that are not built again when nothing they depend on has changed.
TEST_F(WeightsTest, LeaveNothingOfTheirPredecessors) {
    const WeightValues defaults = DefaultWeights();
    const auto setWithSpoiledTables = [&](const WeightValues& weights) {
        WeightValues others = defaults;
        for (int& value : others) value += 50;
        SetWeights(others);
        SetWeights(weights);
    };
    const auto evaluate = [] {
        std::vector<int> scores;
        for (const char* fen :
             {"r2qk2r/pp1b1ppp/2n1pn2/3p4/1bPP4/2N1PN2/PP1B1PPP/R2QKB1R w KQkq -",
              "4k3/2rq1ppp/8/8/3N4/3BB3/5PPP/3R2K1 b - -", "6k1/5ppp/8/3r4/4N3/4B3/5PPP/6K1 w - -",
              "6k1/5pp1/8/8/2n5/8/1B3PPP/6K1 w - -", "3qk3/8/8/8/8/8/8/2NBBRRK w - -",
              "3qk3/p6p/8/8/8/2r5/1PN4P/2R1RQK1 w - -"}) {
            LoadFEN(fen);
            scores.push_back(Evaluation());
        }
        return scores;
    };
    // Half a million entries are no work for instrumented programs.
    for (size_t place = 0; place < WEIGHT_COUNT; place += WORK_DIVISOR) {
        WeightValues changed = defaults;
        changed[place] += 40;
        SetWeights(defaults);
        SetWeights(changed);
        const std::vector<int> scores = evaluate();
        setWithSpoiledTables(changed);
        EXPECT_EQ(evaluate(), scores) << WeightName(static_cast<int>(place));
    }
}

TEST_F(WeightsTest, TheFileThatShipsHoldsTheBuiltInOnes) {
    WeightValues shipped;
    ASSERT_TRUE(ReadWeights(KESTROVAN_TEST_DATA "/../../eval/values.txt", &shipped));
    EXPECT_EQ(shipped, DefaultWeights());
}

TEST_F(WeightsTest, ADamagedFileChangesNothing) {
    const std::string defaults = Written();
    const int score = Evaluation();
    const std::string half = defaults.substr(0, defaults.size() / 2);
    for (const std::string& text :
         {std::string(), half, defaults + "1\n", half + "x\n" + half, defaults + "x", "1." + defaults,
          "1-2" + defaults.substr(defaults.find('\n')), std::string(100'000, '9')}) {
        EXPECT_FALSE(Load(text)) << text.substr(0, 50);
        EXPECT_EQ(Written(), defaults);
        EXPECT_EQ(Evaluation(), score);
    }
    // A number that is too large is one number all the same.
    ASSERT_TRUE(Load("1000000005" + defaults.substr(defaults.find('\n'))));
    EXPECT_EQ(CurrentWeights()[0], LARGEST_WEIGHT);
    EXPECT_EQ(CurrentWeights()[1], DefaultWeights()[1]);
    SetWeights(DefaultWeights());
    EXPECT_FALSE(LoadWeights(directory_.FilePath("absent").c_str()));
    EXPECT_FALSE(WriteWeights(directory_.FilePath("absent/weights").c_str()));
}

TEST_F(WeightsTest, EvenWildOnesGiveAScore) {
    const size_t count = SplitWords(Written()).size();
    for (const auto& [even, odd] :
         {std::pair{99999, 99999}, {-99999, -99999}, {99999, -99999}, {-99999, 99999}}) {
        std::string wild;
        for (size_t i = 0; i < count; ++i) wild += std::to_string(i % 2 == 0 ? even : odd) + "\n";
        ASSERT_TRUE(Load(wild));
        const auto check = [] { EXPECT_LE(std::abs(Evaluation()), SCORE_LIMIT); };
        VisitRandomBoards(1000 / WORK_DIVISOR, 9, check);
        VisitPositions(1000 / WORK_DIVISOR, 10, check);
    }
}

}  // namespace
