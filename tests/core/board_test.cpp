#include "core/board.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/psqt.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using BoardTest = CoreTest;

TEST_F(BoardTest, KnowsTheInitialPosition) {
    for (const int side : {WHITE, BLACK}) {
        EXPECT_EQ(board.Material[side], 3900);
        EXPECT_EQ(board.PieceMaterial[side], 31u);
        EXPECT_EQ(board.MajorCount[side], 4u);
        EXPECT_EQ(board.MinorCount[side], 4u);
    }
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(board.FileOccupancy[i], 0xC3u);
        EXPECT_EQ(board.RankOccupancy[i], i < 2 || i > 5 ? 255u : 0u);
    }
    int16_t sum = 0;
    for (int square = 0; square < 64; ++square) {
        const int side = square < 32 ? WHITE : BLACK;
        const int16_t opening = PsqTable[PsqIndex(board.PieceOn[square], side, square)].Opening;
        if (board.PieceOn[square] != EMPTY) sum += side == BLACK ? opening : -opening;
    }
    EXPECT_EQ(board.PsqOpening, sum);
    EXPECT_EQ(LastMove(), NO_MOVE);
}

// With the phases exchanged in the tables, every position of the game has its two sums exchanged.
TEST_F(BoardTest, RebuildsTheSumsOfTheWholeGame) {
    const std::vector<PsqEntry> saved(PsqTable, PsqTable + PSQ_ENTRIES);
    for (const char* fen : NASTY_POSITIONS) {
        LoadFEN(fen);
        std::mt19937 random(32);
        std::vector<Board> game;
        for (int ply = 0; ply < 60; ++ply) {
            const std::vector<Move> legal = LegalMoves();
            if (legal.empty()) break;
            MakeMove(legal[random() % legal.size()], 1);
            game.push_back(board);
        }
        for (PsqEntry& entry : PsqTable) std::swap(entry.Opening, entry.Ending);
        RebuildPsqSums();
        for (; !game.empty(); game.pop_back()) {
            std::swap(game.back().PsqOpening, game.back().PsqEnding);
            EXPECT_TRUE(board == game.back()) << fen << " after " << game.size() << " moves";
            UnmakeMove();
        }
        std::copy(saved.begin(), saved.end(), PsqTable);
    }
}

// Knights go out and home, `plies` times in all.
void Shuffle(int plies) {
    static constexpr const char* MOVES[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    for (int ply = 0; ply < plies; ++ply) {
        ReserveHistory(200);
        MakeMove(TextToMove(MOVES[GamePly() % 4]), 1);
    }
}

TEST_F(BoardTest, LongGamesKeepTheirLastMoves) {
    Shuffle(500);
    EXPECT_EQ(HistoryForgotten, 0);
    for (int ply = 500; ply < 2001; ++ply) {
        Shuffle(1);
        ASSERT_EQ(GamePly(), ply + 1);
        ASSERT_EQ(HistoryForgotten % 2, 0) << "the index tells the mover";
        ASSERT_LE(HistoryLength, HISTORY_SIZE - 199);
        ASSERT_GE(HistoryLength, 101) << "within reach of the fifty-move rule";
    }
    ReserveHistory(256);
    EXPECT_LE(HistoryLength, HISTORY_SIZE - 256);
    EXPECT_EQ(History[HistoryLength - 100].HashKey, board.HashKey) << "repetitions stay in sight";
    EXPECT_STREQ(MoveToText(LastMove()), "g1f3");
    const int kept = HistoryLength;
    while (HistoryLength > 0) UnmakeMove();
    EXPECT_EQ(board.Fifty, 2001u - static_cast<unsigned>(kept));
    EXPECT_EQ(GamePly() % 2, board.SideToMove);
    ResetBoard();
    EXPECT_EQ(GamePly(), 0);
}

}  // namespace
