#include "eval/pawns.h"

#include <string>
#include <vector>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/fen.h"
#include "tests/eval/evaltest.h"
#include "tests/support/datafile.h"
#include "tests/support/slowpawns.h"

namespace {

using PawnsTest = EvalTest;

// Score, file sets and defects in the order of the data.
using PawnFacts = std::vector<int>;
constexpr const char* FACT_KEYS[] = {"pawn_score", "passed", "pawn_files", "candidates", "weak", "defects"};

PawnFacts Evaluated() {
    int opening = 700, ending = -700;  // sums of other terms
    EvaluatePawnStructure(&opening, &ending);
    PawnFacts facts{opening - 700, ending + 700};
    for (const auto set : {&PawnEntry::PassedVector, &PawnEntry::PawnFiles, &PawnEntry::CandidateFiles,
                           &PawnEntry::WeakFiles}) {
        for (const int side : {WHITE, BLACK}) facts.push_back((pawn_cache.*set)(side));
    }
    facts.insert(facts.end(), {pawn_cache.white_defects_k, pawn_cache.white_defects_q,
                               pawn_cache.black_defects_k, pawn_cache.black_defects_q});
    return facts;
}

PawnFacts Told() {
    const SlowPawns told = TellPawns(SlowPosition::FromBoard());
    PawnFacts facts{told.Opening, told.Ending};
    for (const auto& sets :
         {told.Passed, told.Files, told.Candidates, told.Weak, told.Defects[WHITE], told.Defects[BLACK]}) {
        facts.insert(facts.end(), sets, sets + 2);
    }
    return facts;
}

Bitboard PawnsOnFiles(int side, int files) {
    Bitboard pawns = 0;
    for (int square = 0; square < 64; ++square) {
        if (HasMan(square, side, PAWN) && (files >> FileOf(square) & 1) != 0) pawns |= SquareBit(square);
    }
    return pawns;
}

TEST_F(PawnsTest, Examples) {
    for (const DataRow& row : ReadDataRows("evaluation.txt")) {
        LoadFEN(row.Fen.c_str());
        PawnFacts facts;
        for (const char* key : FACT_KEYS) {
            for (const std::string& value : row.Values(key)) facts.push_back(std::stoi(value));
        }
        EXPECT_EQ(Told(), facts) << row.Fen;
        EXPECT_EQ(Evaluated(), facts) << row.Fen;
    }
}

TEST_F(PawnsTest, AgreeWithASecondTellingWhateverTheHashHolds) {
    const auto compare = [] {
        const PawnFacts told = Told();
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(Evaluated(), told);
            for (const int side : {WHITE, BLACK}) {
                EXPECT_EQ(eval_info.passed_pawns[side], PawnsOnFiles(side, pawn_cache.PassedVector(side)));
            }
        }
    };
    for (const int entries : PawnHashSizes()) {
        SCOPED_TRACE(entries);
        UsePawnHash(entries);
        LoadFEN("4k3/8/8/8/8/8/8/4K3 w - -");
        EXPECT_EQ(Evaluated(), Told()) << "no pawns, with entries that nobody has written";
        for (int round = 0; round < 2; ++round) {
            VisitRandomBoards(10'000 / WORK_DIVISOR, 5, compare);
            VisitPositions(4000 / WORK_DIVISOR, 6, compare);
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
        {"4k3/8/6p1/6P1/7P/8/8/4K3 w - -", "none on the fifth", -9 - 7 + 12, -19 - 7 + 8 - 6},
    };
    for (const auto& [fen, what, opening, ending] : rows) {
        LoadFEN(fen);
        PawnFacts facts = Evaluated();
        facts.resize(2);
        EXPECT_EQ(facts, (PawnFacts{opening, ending})) << what << " " << fen;
    }
    LoadFEN("4k3/8/8/4P3/8/4P3/8/4K3 w - -");
    Evaluated();
    EXPECT_EQ(CountSquares(eval_info.passed_pawns[WHITE]), 2) << "the rear pawn counts as passed, too";
}

// The inner file of a wing is examined for White first, and what White lacks there lets Black be examined.
// The second position is the first with colours exchanged.
TEST_F(PawnsTest, DefectsDependOnTheOrderOfTheSides) {
    LoadFEN("6k1/6pp/5p2/8/8/7P/6P1/6K1 w - -");
    Evaluated();
    EXPECT_EQ(pawn_cache.white_defects_k, 1 + 3);
    EXPECT_EQ(pawn_cache.black_defects_k, 1 + 1);
    LoadFEN("6k1/6p1/7p/8/8/5P2/6PP/6K1 w - -");
    Evaluated();
    EXPECT_EQ(pawn_cache.black_defects_k, 1 + 3);
    EXPECT_EQ(pawn_cache.white_defects_k, 0 + 1);
}

}  // namespace
