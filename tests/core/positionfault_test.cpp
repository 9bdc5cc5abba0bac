#include "core/positionfault.h"

#include "core/board.h"
#include "core/fen.h"
#include "tests/support/walker.h"

namespace {

using PositionFaultTest = CoreTest;

TEST_F(PositionFaultTest, FindsNoneInGames) {
    VisitPositions(5000 / WORK_DIVISOR, 61, [] {
        ASSERT_FALSE(HasPhantomMen());
        ASSERT_EQ(FindPositionFault(), nullptr);
    });
}

TEST_F(PositionFaultTest, NamesEachFault) {
    constexpr char KINGS[] = "must have exactly one king";
    constexpr char PAWN_AT_THE_END[] = "a pawn stands on the first or last rank";
    constexpr char KING_LEFT_IN_CHECK[] = "the side not to move is in check";
    // It would let a capture en passant land on a man.
    constexpr char NO_DOUBLE_STEP[] = "no pawn can have made the double step";
    const struct {
        const char *Fen, *Fault;
    } rows[] = {
        {"4k3/8/8/8/8/8/8/8 w - -", KINGS},
        {"4k3/8/8/8/8/8/8/K3K3 w - -", KINGS},
        {"8/8/8/8/8/8/8/4K3 w - -", KINGS},
        {"k1k1k3/8/8/8/8/8/8/4K3 w - -", KINGS},
        {"P3k3/8/8/8/8/8/8/4K3 w - -", PAWN_AT_THE_END},
        {"4k3/8/8/8/8/8/8/p3K3 b - -", PAWN_AT_THE_END},
        {"4k3/pppppppp/p7/8/8/8/8/4K3 w - -", "a side has more than eight pawns"},
        {"4k3/8/8/8/8/QQQQQQQQ/QQQQQQQQ/4K3 b - -", "a side has more than sixteen men"},
        {"8/8/8/8/8/8/4k3/4K3 w - -", KING_LEFT_IN_CHECK},
        {"4k3/8/3n4/3pP3/8/8/8/4K3 w - d5", NO_DOUBLE_STEP},
        {"4k3/3n4/8/3pP3/8/8/8/4K3 w - d5", NO_DOUBLE_STEP},
        {"4k3/8/8/8/3Pp3/8/3N4/4K3 b - d4", NO_DOUBLE_STEP},
    };
    for (const auto& [fen, fault] : rows) {
        LoadFEN(fen);
        const char* found = FindPositionFault();
        ASSERT_NE(found, nullptr) << fen;
        EXPECT_TRUE(std::string(found).ends_with(fault)) << fen << ": " << found;
    }
}

}  // namespace
