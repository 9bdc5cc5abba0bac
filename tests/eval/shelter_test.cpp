#include "eval/shelter.h"

#include <climits>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "eval/pawns.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"
#include "tests/support/slowpawns.h"

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
        const auto text = [](int white, int black) {
            return std::vector{std::to_string(white), std::to_string(black)};
        };
        EXPECT_EQ(text(Shelter(WHITE), Shelter(BLACK)), row.Values("shelter")) << row.Fen;
        Evaluation();
        const int* penalty = eval_info.shelter_penalty;
        EXPECT_EQ(text(penalty[WHITE], penalty[BLACK]), row.Values("shelter_penalty")) << row.Fen;
        EXPECT_EQ(text(ShelterValueOf(penalty[WHITE]), ShelterValueOf(penalty[BLACK])),
                  row.Values("shelter_value"))
            << row.Fen;
    }
}

TEST_F(ShelterTest, AgreesWithASecondTellingForEveryPersonality) {
    const struct {
        int Cowardice, OwnFactor, Aggressivity, EnemyFactor;
    } personalities[] = {{100, 50, 100, 50}, {37, 18, 250, 125}, {0, 0, 300, 150}, {99, 49, 0, 0}};
    int personality = 0;
    const auto compare = [&] {
        const auto& [cowardice, ownFactor, aggressivity, enemyFactor] = personalities[++personality % 4];
        SetCowardice(cowardice);
        SetAggressivity(aggressivity);
        EngineSide = personality / 4 % 2;
        const SlowPosition position = SlowPosition::FromBoard();
        for (const int side : {WHITE, BLACK}) {
            const SlowShelter told = TellShelter(position, side);
            const int factor = side == EngineSide ? ownFactor : enemyFactor;
            EXPECT_EQ(Shelter(side), told.QueenLeft - told.Value * factor / 100) << side;
            EXPECT_EQ(eval_info.shelter_penalty[side], told.Index) << side;
        }
    };
    VisitRandomBoards(20'000 / WORK_DIVISOR, 7, compare);
    VisitPositions(10'000 / WORK_DIVISOR, 8, compare);
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
