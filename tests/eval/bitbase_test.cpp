#include "eval/bitbase.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "core/types.h"
#include "tests/support/walker.h"

namespace {

// King and pawn against king by brute force, for a white pawn on any file. Knows nothing but how the men
// move.
class PawnEndingSolver {
  public:
    PawnEndingSolver() : won_(2 * 64 * 64 * 64) {
        while (Sweep()) {
        }
    }

    bool IsWon(int turn, int white, int black, int pawn) const {
        return won_[Index(turn, white, black, pawn)] != 0;
    }

    static bool IsNear(int a, int b) { return std::abs(a % 8 - b % 8) <= 1 && std::abs(a / 8 - b / 8) <= 1; }
    static bool IsPawnCheck(int pawn, int king) {
        return king / 8 == pawn / 8 + 1 && std::abs(king % 8 - pawn % 8) == 1;
    }
    static bool IsLegal(int turn, int white, int black, int pawn) {
        return !IsNear(white, black) && white != pawn && black != pawn &&
               (turn == BLACK || !IsPawnCheck(pawn, black));
    }

  private:
    static int Index(int turn, int white, int black, int pawn) {
        return ((turn * 64 + white) * 64 + black) * 64 + pawn;
    }

    bool Sweep() {
        bool isChanged = false;
        for (int index = 0; index < 2 * 64 * 64 * 64; ++index) {
            const int turn = index >> 18, white = index >> 12 & 63, black = index >> 6 & 63,
                      pawn = index & 63;
            if (won_[index] || pawn < 8 || pawn > 55 || !IsLegal(turn, white, black, pawn)) continue;
            won_[index] = turn == WHITE ? WhiteWins(white, black, pawn) : BlackLoses(white, black, pawn);
            isChanged |= won_[index] != 0;
        }
        return isChanged;
    }

    bool WhiteWins(int white, int black, int pawn) const {
        for (int to = 0; to < 64; ++to) {
            const bool isMove = to != white && IsNear(white, to) && IsLegal(BLACK, to, black, pawn);
            if (isMove && IsWon(BLACK, to, black, pawn)) return true;
        }
        int next = pawn;
        for (int step = pawn < 16 ? 2 : 1; step > 0; --step) {
            next += 8;
            if (next == white || next == black) return false;
            // A new queen or rook wins unless it is taken at once; one of them doesn't stalemate.
            if (next > 55) return !IsNear(black, next) || IsNear(white, next);
            if (IsWon(BLACK, white, black, next)) return true;
        }
        return false;
    }

    bool BlackLoses(int white, int black, int pawn) const {
        bool hasMove = false;
        for (int to = 0; to < 64; ++to) {
            if (to == black || !IsNear(black, to) || IsNear(white, to)) continue;
            if (to == pawn) return false;
            if (IsPawnCheck(pawn, to)) continue;
            if (!IsWon(WHITE, white, to, pawn)) return false;
            hasMove = true;
        }
        return hasMove;
    }

    std::vector<char> won_;
};

TEST(BitbaseTest, AgreesWithBruteForce) {
    const PawnEndingSolver solver;
    int wins = 0, faults = 0;
    for (int index = 0; index < 2 * 64 * 64 * 64; ++index) {
        const int turn = index >> 18, white = index >> 12 & 63, black = index >> 6 & 63, pawn = index & 63;
        if (pawn < 8 || pawn > 55 || !PawnEndingSolver::IsLegal(turn, white, black, pawn)) continue;
        const bool isWon = solver.IsWon(turn, white, black, pawn);
        wins += isWon;
        faults += IsPawnEndingWon(WHITE, white, black, pawn, turn) != isWon;
        faults += IsPawnEndingWon(BLACK, white ^ 56, black ^ 56, pawn ^ 56, ChangeSide(turn)) != isWon;
    }
    EXPECT_EQ(faults, 0);
    EXPECT_GT(wins, 200'000) << "the solver finds wins at all";
}

}  // namespace
