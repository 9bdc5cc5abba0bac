#include "search/picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "core/attackquery.h"
#include "core/legal.h"
#include "search/plyinfo.h"
#include "search/search.h"
#include "tests/search/searchtest.h"

namespace {

constexpr bool IsPlain(Move move) {
    return IsQuiet(move) && !IsEnPassant(move);
}

std::vector<Move> Sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

using PickerTest = SearchTest;

TEST_F(PickerTest, HandsOutEveryMoveOnceWhateverTableAndKillersSay) {
    std::mt19937 random(17);
    int killersPlayed = 0;
    Ply = 3;
    VisitPositions(4000 / WORK_DIVISOR, 5, [&] {
        const std::vector<Move> expected = MovesOf(GenerateMoves);
        // A move of the list, or any word, as it may come from other positions or by colliding keys.
        const auto any = [&] {
            const Move noise = static_cast<Move>(random() & 0x1FFFFF);
            return expected.empty() || random() % 2 == 0 ? noise : expected[random() % expected.size()];
        };
        Node node{-100, 100, 240, 1, IsKingAttacked(board.SideToMove)};
        node.HashMove = VerifiedMove(any(), node.IsInCheck);
        Move& first = PlyInfo[Ply].Killer1[board.SideToMove];
        Move& second = PlyInfo[Ply].Killer2[board.SideToMove];
        for (Move* killer : {&first, &second}) {
            *killer = any();
            if (!IsPlain(*killer)) *killer = NO_MOVE;
        }
        if (first == second) second = NO_MOVE;
        std::vector<Move> moves;
        {
            MovePicker picker(node);
            // A look at the stages beforehand changes nothing.
            if (!node.IsInCheck && random() % 2 == 0) picker.Quiets();
            int score = 0, last = HASH_MOVE_SCORE;
            while (const Move move = picker.Next(&score)) {
                moves.push_back(move);
                EXPECT_TRUE(!node.IsInCheck || score <= last) << "replies to a check are one stage";
                last = score;
            }
        }
        EXPECT_EQ(MoveListTop, 0);
        EXPECT_EQ(TextOf(Sorted(moves)), TextOf(Sorted(expected)));
        EXPECT_TRUE(node.HashMove == NO_MOVE || moves.at(0) == node.HashMove);
        if (node.IsInCheck) return;
        const auto rest = moves.begin() + (node.HashMove != NO_MOVE);
        auto quiet = std::find_if(rest, moves.end(), IsPlain);
        EXPECT_EQ(std::find_if_not(quiet, moves.end(), IsPlain), moves.end()) << "captures come first";
        for (const Move killer : {first, second}) {
            if (killer == node.HashMove || std::find(quiet, moves.end(), killer) == moves.end()) continue;
            EXPECT_EQ(*quiet++, killer);
            ++killersPlayed;
        }
    });
    Ply = 0;
    EXPECT_GT(killersPlayed * WORK_DIVISOR, 500);
}

}  // namespace
