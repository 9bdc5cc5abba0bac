#include "search/node.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/attackquery.h"
#include "core/makemove.h"
#include "core/movetest.h"
#include "core/psqt.h"
#include "eval/evaluate.h"
#include "eval/materialtable.h"
#include "search/extension.h"
#include "search/futility.h"
#include "search/materialwindow.h"
#include "search/nullmove.h"
#include "search/plyinfo.h"
#include "search/polling.h"
#include "search/search.h"
#include "tests/search/searchtest.h"
#include "tests/support/positions.h"

namespace {

// What the parts of a node decide, one by one.
class NodeTest : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        MaterialLow = -20'000;
        MaterialHigh = 20'000;
        EngineSide = WHITE;
        std::copy_n(PsqTable, PSQ_ENTRIES, table_.begin());
        Ply = 1;
        ClearRequests();
        PollCountdown = 1'000'000;
    }
    void TearDown() override {
        std::copy_n(table_.begin(), PSQ_ENTRIES, PsqTable);
        Ply = DrawScore = 0;
        PlyInfo[0].Flags = PlyInfo[1].Flags = PlyInfo[1].InCheck = 0;
        SearchTest::TearDown();
    }

    static void FlattenSquares() { std::fill_n(PsqTable, PSQ_ENTRIES, PsqEntry{}); }

  private:
    std::vector<PsqEntry> table_ = std::vector<PsqEntry>(PSQ_ENTRIES);
};

TEST_F(NodeTest, AGainIsWhatTheMoveChangesAtOnce) {
    FlattenSquares();
    VisitPositions(2000 / WORK_DIVISOR, 9, [] {
        const int us = board.SideToMove;
        const auto lead = [&] { return board.Material[us] - board.Material[ChangeSide(us)]; };
        for (const Move move : LegalMoves()) {
            const int gain = EstimateGain(move, false) + lead(), lost = EstimateGain(move, true) + lead();
            MakeMove(move, 1);
            EXPECT_EQ(gain, lead()) << MoveToText(move);
            EXPECT_EQ(lost, lead() - PieceValue[MovePiece(move)]) << MoveToText(move);
            UnmakeMove();
        }
    });
    // A knight's way is worth what the squares are, by phase.
    LoadFEN("4k3/8/8/8/8/8/8/1N2K3 w - -");
    PsqTable[PsqIndex(KNIGHT, WHITE, 18)] = {100, 40};
    PsqTable[PsqIndex(KNIGHT, WHITE, 1)] = {-10, 0};
    const int phase = CurrentMaterial().current_phase;
    EXPECT_EQ(EstimateGain(TextToMove("b1c3"), false), (110 * (256 - phase) + 40 * phase) / 256);
}

TEST_F(NodeTest, FutilityThresholds) {
    FlattenSquares();
    constexpr char MANY[] = "r2qk3/8/1n6/P7/8/8/8/R3K3 w - -", FEW[] = "r3k3/8/1n6/P7/8/8/8/R3K3 w - -";
    const struct {
        const char *Fen, *Move;
        int Missing, Score, PawnStructure;  // centipawns from the position to alpha
        bool IsFutile;
    } rows[] = {
        {MANY, "a1b1", 112, 0, 0, false},
        {MANY, "a1b1", 113, 0, 25, true},
        {MANY, "a1b1", 113, 0, 26, false},
        {MANY, "a1b1", 182, 0, 26, false},
        {MANY, "a1b1", 183, 0, 26, true},
        {MANY, "a5b6", 412, 0, 0, false},
        {MANY, "a5b6", 413, 0, 0, true},
        {FEW, "a1b1", 113, -498, 0, false},
        {FEW, "a1b1", 113, -499, 0, true},
        {FEW, "a1b1", 112, -499, 0, false},
        {FEW, "a1b1", 900, 0, 0, false},
        // The dear ones depend on one threshold only.
        {"4k3/8/8/8/8/8/r7/R3K3 w - -", "a1a2", 894, -900, 0, false},
        {"4k3/8/8/8/8/8/r7/R3K3 w - -", "a1a2", 895, 0, 99, true},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        NodeEvaluation evaluation;
        evaluation.Score = row.Score;
        evaluation.PawnStructure = row.PawnStructure;
        const int gain = EstimateGain(TextToMove(row.Move), false);
        EXPECT_EQ(gain, PieceValue[MoveCaptured(TextToMove(row.Move))]);
        EXPECT_EQ(IsFutile(gain, row.Score + row.Missing, evaluation), row.IsFutile)
            << row.Fen << " " << row.Move << " " << row.Missing << " " << row.Score;
    }
}

TEST_F(NodeTest, ExtensionsAndReductions) {
    constexpr char TAKES[] = "4k3/8/4p3/3p4/4P3/8/3P4/R3K3 w - -",
                   GUARDED[] = "4k3/8/8/2p1p3/3b4/8/8/3QK3 w - -";
    constexpr char LAST_ROOK[] = "4k3/8/8/8/8/8/4r3/4K3 w - -", PAWN[] = "3rk3/8/8/1P6/8/8/8/4K2R w - -";
    constexpr char FORK[] = "3r1r1k/8/8/8/6N1/8/8/4K2R w - -";
    const struct {
        const char *Fen, *Before, *Move;
        bool IsFirst, IsFull;
        int Type, Depth, FlagsBefore, Change, Alternative, Flags;
    } rows[] = {
        {TAKES, "", "a1b1", true, true, 1, 240, 0, 0, 0, 0},
        {TAKES, "", "a1b1", false, true, 1, 240, 0, -60, -60, 0},
        {TAKES, "e4d5", "e6d5", false, true, 1, 240, 0, -15, -15, FLAG_RECAPTURE},
        {TAKES, "e4d5", "e6d5", false, false, 1, 240, 0, -38, -38, FLAG_RECAPTURE},
        {TAKES, "e4d5", "e6d5", false, true, 0, 240, FLAG_RECAPTURE, -60, -60, 0},  // once in a row
        {TAKES, "", "a1a8", false, true, 1, 240, 0, 0, 0, FLAG_CHECK},
        {TAKES, "", "a1a8", false, false, 1, 240, 0, -30, -30, FLAG_CHECK},
        {LAST_ROOK, "", "e1e2", true, true, 1, 240, 0, 60, 60, FLAG_PAWN_ENDING},
        {LAST_ROOK, "", "e1e2", false, true, 1, 240, 0, 0, 0, FLAG_PAWN_ENDING},
        // What seems to lose a man is looked at a ply less deeply at first, outside of the main line.
        {GUARDED, "", "d1d4", false, true, 1, 240, 0, -60, -120, 0},
        {GUARDED, "", "d1d4", false, true, 0, 240, 0, -60, -60, 0},
        {GUARDED, "", "d1b3", false, true, 1, 240, 0, -60, -60, 0},
        {GUARDED, "", "d1a4", false, false, 1, 240, 0, -30, -30, FLAG_CHECK},
        // Threats: a far pawn in the main line, a fork before the horizon.
        {PAWN, "", "b5b6", false, true, 0, 240, 0, 0, 0, FLAG_PASSED_PUSH | FLAG_THREAT},
        {PAWN, "", "b5b6", false, true, 1, 240, 0, -60, -60, FLAG_PASSED_PUSH},
        {FORK, "", "g4e6", false, true, 1, 120, 0, 0, 0, FLAG_THREAT},
        {FORK, "", "g4e6", false, true, 1, 240, 0, -60, -60, FLAG_THREAT},
        {FORK, "", "g4e3", false, true, 1, 120, 0, -60, -60, 0},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        if (*row.Before != '\0') MakeMove(TextToMove(row.Before), 1);
        Node node{0, 1, row.Depth, row.Type, IsKingAttacked(board.SideToMove)};
        node.HasFullExtensions = row.IsFull;
        const Move move = TextToMove(row.Move);
        const int order = MoveCaptured(move) != EMPTY ? CaptureScore(move) : 0;
        PlyInfo[0].Flags = row.FlagsBefore;
        int alternative = 1000;
        const int change = ComputeExtension(node, {move, order, row.IsFirst, GivesCheck(move)}, &alternative);
        EXPECT_EQ(std::vector({change, alternative, PlyInfo[1].Flags}),
                  std::vector({row.Change, row.Alternative, row.Flags}))
            << row.Fen << " " << row.Move << " type " << row.Type << " depth " << row.Depth;
    }
}

TEST_F(NodeTest, MaterialOutsideOfTheWindowDecides) {
    constexpr char WON[] = "4k3/8/8/8/8/8/8/QR2K3 w - -", LOST[] = "4k3/8/8/8/8/8/8/QR2K3 b - -";
    constexpr char PAWN7[] = "4k3/8/8/8/8/8/4p3/QR2K3 w - -", PAWN6[] = "4k3/8/8/8/8/4p3/8/QR2K3 w - -";
    const struct {
        const char* Fen;
        int EngineSide, Low, High, Beta;
        bool IsCutOff;
        int Score;
    } rows[] = {
        {WON, WHITE, -1000, 1399, 1400, true, 1400},
        {WON, WHITE, -1000, 1399, 1401, false, 1400},
        {WON, WHITE, -1000, 1400, 0, false, 1400},
        {WON, BLACK, -1399, 5000, 0, true, 1400},  // the window is the engine's
        {WON, BLACK, -1400, 1000, 0, false, 1400},
        {PAWN7, WHITE, -1000, 1199, 0, true, 1200},  // a pawn before its last step is worth another one
        {PAWN7, WHITE, -1000, 1200, 0, false, 1200},
        {PAWN6, WHITE, -1000, 1249, 0, true, 1250},
        {LOST, WHITE, -1000, 1399, -1400, true, -1400},
        {LOST, WHITE, -1000, 1399, -1399, false, -1400},
        {"4k3/8/8/8/8/8/8/Q3K3 w - -", WHITE, -100, 100, 0, false, 900},  // one piece may be held
        {"4k3/8/8/8/8/8/8/R3K2N w - -", WHITE, -100, 100, 0, true, 800},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        EngineSide = row.EngineSide;
        MaterialLow = row.Low;
        MaterialHigh = row.High;
        int score = 0;
        EXPECT_EQ(CutsOffByMaterial(row.Beta, &score), row.IsCutOff) << row.Fen << " " << row.High;
        EXPECT_EQ(score, row.Score) << row.Fen << " " << row.High;
    }
}

TEST_F(NodeTest, ScoresFadeWithoutProgress) {
    LoadFEN("4k3/8/8/8/8/8/8/QR2K3 w - -");
    NodeEvaluation fresh, faded;
    EvaluateNode(&fresh);
    EXPECT_TRUE(!fresh.IsLazy && fresh.Score > 800);
    board.Fifty = 58;
    EvaluateNode(&faded);
    EXPECT_EQ(faded.Score, fresh.Score * 156 / 256);
    EXPECT_EQ(faded.Attacked[WHITE], fresh.Attacked[WHITE]);
    MaterialHigh = 1000;
    EvaluateNode(&faded);
    EXPECT_TRUE(faded.IsLazy && faded.Score == 1400 * 156 / 256) << faded.Score;
    board.Fifty = 8;
    EvaluateNode(&faded);
    EXPECT_EQ(faded.Score, 1400);
}

TEST_F(NodeTest, PassingShowsAMateThreat) {
    for (const auto& [fen, threat] : {std::pair{"1r4k1/5ppp/8/7R/7R/8/5PPP/6K1 w - -", 1},
                                      std::pair{"1r4k1/5ppp/8/7R/7R/8/5PP1/6K1 w - -", 0}}) {
        LoadFEN(fen);
        Node node{-1, 0, 300, 1, false};
        EvaluateNode(&node.Eval);
        ASSERT_TRUE(MayTryNull(node)) << fen;
        TryNull(node);
        EXPECT_EQ(node.MateThreat, threat) << fen;
        ClearHash();
        ::Search(-1, 0, 300, 1, 1);
        ASSERT_NE(HashProbe(), nullptr) << fen;
        EXPECT_EQ(HashMateThreat(*HashProbe()), threat) << fen;
        // When passing is out of the question.
        const Node never[] = {{-1, 0, 300, 0, false},
                              {-1, 0, 300, 1, true},
                              {-1, 0, 300, 1, false, false, false, true},
                              {MATE_BOUND - 1, MATE_BOUND, 300, 1, false},
                              {-MATE_BOUND, 0, 300, 1, false},
                              {9998, 9999, 300, 1, false}};
        for (Node other : never) {
            other.Eval = node.Eval;
            EXPECT_FALSE(MayTryNull(other)) << fen;
        }
    }
}

TEST_F(NodeTest, EndsCountFromTheRootAndDrawsForTheEngine) {
    for (const int side : {WHITE, BLACK}) {
        EngineSide = side;
        DrawScore = -25;
        LoadFEN(STALEMATE);
        const int draw = side == BLACK ? -25 : 25;
        EXPECT_EQ(DrawScoreToMove(), draw);
        EXPECT_EQ(::Search(-1000, 1000, 120, 1, 0), draw);
        board.Fifty = 100;
        EXPECT_EQ(Quiesce(-1000, 1000, 0, 0), draw);
        LoadFEN(MATED);
        for (Ply = 1; Ply < 100; Ply += 7) {
            PlyInfo[Ply].InCheck = 1;
            ClearHash();
            EXPECT_EQ(::Search(-MATE, MATE, 120, 1, 0), Ply - MATE);
            EXPECT_EQ(Quiesce(-MATE, MATE, 0, 0), Ply - MATE);
            PlyInfo[Ply].InCheck = 0;
        }
        Ply = 1;
    }
}

}  // namespace
