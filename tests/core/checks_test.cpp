#include "core/checks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/exchange.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movescore.h"
#include "core/movetest.h"
#include "tests/support/walker.h"

namespace {

using ChecksTest = CoreTest;

struct Found {
    int Number;
    std::vector<Move> Moves;
};

Found QuietChecks(int wide) {
    Found found;
    found.Moves = MovesOf([&] { found.Number = GenerateQuietChecks(wide); });
    std::ranges::sort(found.Moves);
    return found;
}

// Whether another man than the one that moves attacks the king after the move; castling checks directly.
bool IsDiscovered(Move move) {
    if (IsCastling(move)) return false;
    const int us = board.SideToMove;
    MakeMove(move, 1);
    const Bitboard checkers = AttackersOf(us, static_cast<int>(board.KingSquare[us ^ 1]));
    UnmakeMove();
    return (checkers & ~SquareBit(MoveTo(move))) != 0;
}

TEST_F(ChecksTest, FindsTheQuietMovesThatGiveCheck) {
    int left = 0, discovered = 0, castling = 0;
    const auto visit = [&] {
        std::vector<Move> expected = MovesOf([] { GenerateQuiet(0); });
        std::erase_if(expected, [](Move move) { return !GivesCheck(move); });
        std::ranges::sort(expected);
        const Found wide = QuietChecks(1), narrow = QuietChecks(0);
        ASSERT_EQ(TextOf(wide.Moves), TextOf(expected));
        ASSERT_EQ(wide.Number, static_cast<int>(expected.size()));
        ASSERT_EQ(narrow.Number, wide.Number);
        left += static_cast<int>(
            std::erase_if(expected, [](Move move) { return !IsSafeMove(move) && !IsDiscovered(move); }));
        ASSERT_EQ(TextOf(narrow.Moves), TextOf(expected));
        discovered += static_cast<int>(std::ranges::count_if(expected, IsDiscovered));
        castling += static_cast<int>(std::ranges::count_if(expected, IsCastling));
    };
    VisitPositions(30000 / WORK_DIVISOR, 41, visit);
    VisitRandomBoards(30000 / WORK_DIVISOR, 42, visit);
    EXPECT_GT(left, 1000 / WORK_DIVISOR);
    EXPECT_GT(discovered, 1000 / WORK_DIVISOR);
    EXPECT_GT(castling, 20 / WORK_DIVISOR);
}

TEST_F(ChecksTest, ScoresByTheHistoryOfItsSet) {
    VisitPositions(1000 / WORK_DIVISOR, 43, [] {
        for (const int wide : {0, 1}) {
            for (const Move move : QuietChecks(wide).Moves) HistoryCounter(move, wide, board.SideToMove) += 3;
            const int start = MoveListTop;
            GenerateQuietChecks(wide);
            for (; MoveListTop > start; --MoveListTop) {
                const ScoredMove& entry = MoveList[MoveListTop - 1];
                ASSERT_EQ(entry.Score, HistoryCounter(entry.Move, wide, board.SideToMove));
            }
        }
    });
    ClearHistoryCounters();
}

}  // namespace
