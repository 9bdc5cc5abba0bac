#include "eval/pawns.h"

#include <algorithm>
#include <vector>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"

namespace {

using PawnsTest = EvalTest;

// Score, file sets and defects in the order of the data.
std::vector<int> Evaluated() {
    int opening = 700, ending = -700;  // sums of other terms
    EvaluatePawnStructure(&opening, &ending);
    std::vector facts{opening - 700, ending + 700};
    for (const auto set : {&PawnEntry::PassedVector, &PawnEntry::PawnFiles, &PawnEntry::CandidateFiles,
                           &PawnEntry::WeakFiles}) {
        for (const int side : {WHITE, BLACK}) facts.push_back((pawn_cache.*set)(side));
    }
    facts.insert(facts.end(), {pawn_cache.white_defects_k, pawn_cache.white_defects_q,
                               pawn_cache.black_defects_k, pawn_cache.black_defects_q});
    return facts;
}

TEST_F(PawnsTest, Examples) {
    for (const int entries : PawnHashSizes()) {
        UsePawnHash(entries);
        LoadFEN("4k3/8/8/8/8/8/8/4K3 w - -");
        const std::vector<int> pawnless = Evaluated();
        EXPECT_EQ(std::count(pawnless.begin(), pawnless.end() - 4, 0), 10)
            << "in a table that nobody wrote to";
        EXPECT_EQ(std::count(pawnless.end() - 4, pawnless.end(), 16), 4) << "and all files are open";
        for (const DataRow& row : ReadDataRows("evaluation.txt")) {
            LoadFEN(row.Fen.c_str());
            const std::vector<int> expected =
                row.Numbers({"pawn_score", "passed", "pawn_files", "candidates", "weak", "defects"});
            EXPECT_EQ(Evaluated(), expected) << row.Fen;
        }
    }
}

// Worked by hand. The first two are mirror images of each other, but White reads the table of connected pawns
// one square beside.
TEST_F(PawnsTest, ScoresOfSingleRules) {
    const struct {
        const char *Fen, *What;
        int Opening, Ending;
    } rows[] = {
        {"4k3/8/8/8/8/8/pp6/4K3 w - -", "connected", 12 + 18, 12 + 18 + 6},
        {"4k3/PP6/8/8/8/8/8/4K3 w - -", "connected", -8 - 12, -8 - 12 - 6},
        {"4k3/p6p/8/8/8/8/8/4K3 w - -", "only one side has a width", -18 - 18, -18 - 18 + 42},
        {"4k3/6p1/6P1/7P/8/8/8/4K3 w - -", "lever", -9 - 14 + 12, -19 - 14 - 16 + 8 - 6},
        {"4k3/1p6/1P6/P7/8/8/8/4K3 w - -", "lever", -9 - 8 + 12, -19 - 8 - 16 + 8 - 6},
        {"4k3/8/6p1/6P1/7P/8/8/4K3 w - -", "none on the fifth", -9 - 7 + 12, -19 - 7 + 8 - 6},
        {"4k3/4p1p1/6P1/5P2/8/8/8/4K3 w - -", "nor with a pawn on the next file", -22 - 9 - 14 + 16,
         -22 - 19 - 14 + 10 + 12 - 6},
        {"4k3/5pp1/6P1/5P2/8/8/8/4K3 w - -", "nor on its own", -14 + 8, -14 + 10 + 6 - 6},
        {"4k3/8/8/3P4/8/4P3/8/4K3 w - -", "only from home may a double step join", 18, 12 - 6},
    };
    for (const auto& [fen, what, opening, ending] : rows) {
        LoadFEN(fen);
        std::vector<int> facts = Evaluated();
        facts.resize(2);
        EXPECT_EQ(facts, (std::vector{opening, ending})) << what << " " << fen;
    }
    LoadFEN("4k3/8/8/4P3/8/4P3/8/4K3 w - -");
    Evaluated();
    EXPECT_EQ(CountSquares(eval_info.passed_pawns[WHITE]), 2) << "the rear pawn counts as passed, too";
}

TEST_F(PawnsTest, DefectsOfSingleRules) {
    const struct {
        const char* Fen;
        int White, Black;
    } rows[] = {
        // The inner file is examined for White first, and what White lacks there lets Black be examined: the
        // second position is the first with colours exchanged.
        {"6k1/6pp/5p2/8/8/7P/6P1/6K1 w - -", 1 + 3, 1 + 1},
        {"6k1/6p1/7p/8/8/5P2/6PP/6K1 w - -", 0 + 1, 1 + 3},
        {"6k1/5ppp/8/8/8/6PP/5PPP/6K1 w - -", 0, 0},  // no defect to be made up for
    };
    for (const auto& [fen, white, black] : rows) {
        LoadFEN(fen);
        Evaluated();
        EXPECT_EQ(pawn_cache.white_defects_k, white) << fen;
        EXPECT_EQ(pawn_cache.black_defects_k, black) << fen;
    }
}

}  // namespace
