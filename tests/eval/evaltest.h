#pragma once

#include <array>

#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "tests/support/walker.h"

// Default weights, a personality of 100 percent and no pawn hash to begin with; whatever a test changes of
// that is put back.
class EvalTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        UseDefaults();
    }
    void TearDown() override {
        FreePawnHash();
        PawnHashEntries = entries_;
        UseDefaults();
        ResetBoard();
    }

    // An empty pawn hash.
    static void UsePawnHash(int entries) {
        PawnHashEntries = entries;
        ASSERT_TRUE(AllocatePawnHash());
    }
    // Off, always overwritten, and as the program has it.
    std::array<int, 3> PawnHashSizes() const { return {0, 1, entries_}; }

    static int Evaluation() {
        int result = -32700;
        Evaluate(&result);
        return result;
    }

    // Puts the position with its squares changed on the board: 56 exchanges the colours, with EngineSide, and
    // 7 left and right, castling rights left aside.
    static void Reflect(int flip) {
        const Board original = board;
        const bool isExchanged = flip == 56;
        ClearBoard();
        for (int square = 0; square < 64; ++square) {
            if (original.PieceOn[square] == EMPTY) continue;
            const int side = (original.Occupied[WHITE] & SquareBit(square)) != 0 ? WHITE : BLACK;
            AddPiece(square ^ flip, isExchanged ? ChangeSide(side) : side, original.PieceOn[square]);
        }
        if (!isExchanged) return;
        board.SideToMove = ChangeSide(original.SideToMove);
        board.CastlingFlags = original.CastlingFlags >> 2 | (original.CastlingFlags & 3) << 2;
        EngineSide = ChangeSide(EngineSide);
    }

  private:
    static void UseDefaults() {
        InitWeights();
        SetAggressivity(100);
        SetCowardice(100);
        SetTropism(100);
        EngineSide = BLACK;
    }

    const int entries_ = PawnHashEntries;
};
