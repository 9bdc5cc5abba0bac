#include "eval/shelter.h"

#include <climits>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "eval/pawns.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"

namespace {

using ShelterTest = EvalTest;

// The shelter of a side in centipawns, from nothing but the board.
int Shelter(int side) {
    int opening = 0, ending = 0;
    EvaluatePawnStructure(&opening, &ending);
    return EvaluateShelter(side);
}

TEST_F(ShelterTest, Examples) {
    for (const DataRow& row : ReadDataRows("evaluation.txt")) {
        LoadFEN(row.Fen.c_str());
        const std::vector shelters{Shelter(WHITE), Shelter(BLACK)};
        Evaluation();
        const int white = eval_info.shelter_penalty[WHITE], black = eval_info.shelter_penalty[BLACK];
        EXPECT_EQ(shelters, row.Numbers({"shelter"})) << row.Fen;
        EXPECT_EQ((std::vector{white, black}), row.Numbers({"shelter_penalty"})) << row.Fen;
        EXPECT_EQ((std::vector{ShelterValueOf(white), ShelterValueOf(black)}), row.Numbers({"shelter_value"}))
            << row.Fen;
    }
}

// Index 3 + 20 / 2 + 16 / 2, worth 168 in full, and the queen gone from home.
TEST_F(ShelterTest, IsWeightedByThePersonality) {
    const struct {
        int Cowardice, Aggressivity, EngineSide, Score;
    } rows[] = {{100, 0, WHITE, -12 - 84},
                {37, 250, WHITE, -12 - 30},
                {0, 100, WHITE, -12},
                {37, 250, BLACK, -12 - 210},
                {100, 0, BLACK, -12}};
    for (const auto& [cowardice, aggressivity, engineSide, score] : rows) {
        LoadFEN("3qk3/8/8/8/8/8/8/4K2R w K -");
        SetCowardice(cowardice);
        SetAggressivity(aggressivity);
        EngineSide = engineSide;
        EXPECT_EQ(Shelter(WHITE), score) << cowardice << " " << aggressivity << " " << engineSide;
    }
}

// White's shelter, worked by hand.
TEST_F(ShelterTest, IndexOfSingleRules) {
    const struct {
        const char *Fen, *What;
        int Index, Score;
    } rows[] = {
        {"3qk3/6pp/8/8/8/8/5PPP/6K1 w - -", "sheltered", 0, 0},
        {"3qk3/pppppppp/8/8/8/8/PPPPPPPP/R2QK2R w KQ -", "castling ahead", 3, -12},
        {"3qk3/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQ -", "and the queen gone", 3, -12 - 12},
        {"3qk3/pppppppp/8/8/8/8/PPPPPPPP/R2QK2R w - -", "the file to the right counts one more", 4, -18},
        {"3qk3/pppppppp/8/8/8/8/PPPPPPPP/R2KQ2R w - -", "the same beside the d-file", 4, -18},
        {"4k3/pppppppp/8/8/8/8/PPPPPPPP/R2KQ2R w - -", "no enemy queen", 2, -7},
        {"3qk3/8/8/8/8/5b2/5P1P/6K1 w - -", "hole", 3 + 8 + 3, -67},
        {"3qk3/8/8/8/8/2b5/P1P5/1K6 w - -", "hole", 3 + 8 + 3, -67},
        {"3qk3/8/8/8/8/5p2/5P1P/6K1 w - -", "a pawn in the hole", 1 + 8 + 3, -58},
    };
    for (const auto& [fen, what, index, score] : rows) {
        LoadFEN(fen);
        EXPECT_EQ(Shelter(WHITE), score) << what;
        EXPECT_EQ(eval_info.shelter_penalty[WHITE], index) << what;
    }
}

// An index has no limit, but the table ends; weights from a file may even make it negative.
TEST_F(ShelterTest, EveryIndexHasAValue) {
    EXPECT_EQ(ShelterValueOf(23), 175);
    for (const int index : {24, 63, 64, INT_MAX}) EXPECT_EQ(ShelterValueOf(index), 180) << index;
    for (const int index : {0, -1, INT_MIN}) EXPECT_EQ(ShelterValueOf(index), 0) << index;
    LoadFEN("3qk3/8/8/8/8/8/8/4K3 w - -");
    OpenKingFile = 1000;
    EXPECT_EQ(Shelter(WHITE), -90);
    EXPECT_EQ(eval_info.shelter_penalty[WHITE], 3 + 16 + 6 + 1000 + 7);
}

}  // namespace
