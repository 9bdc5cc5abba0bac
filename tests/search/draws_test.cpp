#include "search/draws.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/boardcheck.h"
#include "core/fen.h"
#include "core/keys.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

class DrawsTest : public CoreTest {};

void Play(const std::string& moves) {
    for (const std::string& text : SplitWords(moves)) {
        if (text == "null") {
            MakeNullMove();
            continue;
        }
        const Move move = TextToMove(text.c_str());
        ASSERT_TRUE(IsLegalMove(move)) << text << " of " << moves;
        MakeMove(move, 1);
    }
}

TEST_F(DrawsTest, OneReturnIsARepetition) {
    constexpr char ROOK[] = "4k3/8/8/8/8/8/8/R3K3 w - -";
    const struct {
        const char *Fen, *Moves;
        bool Repeats;
    } rows[] = {
        {START, "g1f3 g8f6 f3g1", false},
        // Six plies: there and back by other ways.
        {START, "b1c3 b8c6 c3e4 c6e5 e4c3 e5c6 c3b1 c6b8", true},
        // The same men, the other side to move.
        {ROOK, "a1a2 e8e7 a2a3 e7e8 a3a1", false},
        // Rights that a rook or king has lost don't tell positions apart, deliberately.
        {CASTLING_ALL, "a1b1 a8b8 b1a1 b8a8", true},
        // A promotion, a pawn or a passed turn on the way.
        {"7k/P7/8/8/8/8/8/7K w - -", "a7a8q h8g7 a8a7 g7h8 a7a8 h8g7", true},
        {ROOK, "a1a2 e8e7 null e7e8 a2a1 e8e7", false},
    };
    for (const auto& [fen, moves, repeats] : rows) {
        LoadFEN(fen);
        Play(moves);
        EXPECT_EQ(IsRepetition(), repeats) << fen << ": " << moves;
    }
    LoadFEN(ROOK);
    board.Fifty = 98;
    Play("a1a2");
    EXPECT_FALSE(IsDraw());
    Play("e8e7");
    EXPECT_TRUE(IsDraw() && !IsRepetition()) << "fifty moves";
}

// Claims count by the rules: other rights make another position, and nothing is moved for good.
TEST_F(DrawsTest, OccurrencesAreCountedByTheRules) {
    const std::string knights = "g1f3 g8f6 f3g1 f6g8 ";
    const struct {
        std::string Fen, Moves;
        int Count;
    } rows[] = {
        {START, "", 1},
        {START, knights, 2},
        {START, knights + knights, 3},
        {START, knights + knights + "b1c3 b8c6 c3b1 c6b8", 4},
        {START, knights + knights + "g1f3", 3},
        {START, knights + "e2e4 e7e5 " + knights, 2},
        // En passant was possible the first time.
        {"4k1n1/8/8/8/1p6/8/P7/4K1N1 w - -", "a2a4 " + std::string("g8f6 g1f3 f6g8 f3g1"), 1},
        {CASTLING_ALL, "a1b1 a8b8 b1a1 b8a8", 1},
        {CASTLING_ALL, "a1b1 a8b8 b1a1 b8a8 a1b1 a8b8 b1a1 b8a8", 2},
    };
    for (const auto& [fen, moves, count] : rows) {
        LoadFEN(fen.c_str());
        Play(moves);
        const Board before = board;
        const int plies = HistoryLength;
        EXPECT_EQ(CountOccurrences(), count) << fen << ": " << moves;
        EXPECT_TRUE(board == before && HistoryLength == plies && IsBoardExact()) << fen;
        // A command may pass the turn at any time.
        board.SideToMove ^= 1;
        const Board passed = board;
        CountOccurrences();
        EXPECT_TRUE(board == passed && HistoryLength == plies) << fen;
    }
}

// Longer than the record: what has been let go is no longer seen, what is kept is.
TEST_F(DrawsTest, LongGames) {
    for (int i = 0; i < 700; ++i) {
        Play(i % 2 == 0 ? "g1f3 g8f6" : "f3g1 f6g8");
        ReserveHistory(HISTORY_RESERVE);
        EXPECT_EQ(IsRepetition(), i >= 1) << i;
    }
    EXPECT_EQ(GamePly(), 1400);
}

// Random games among few men repeat themselves often.
TEST_F(DrawsTest, SeesADrawBeforeTheMoveIsMade) {
    int draws = 0;
    for (const char* fen : {"4k3/8/8/8/8/8/8/R3K3 w - -", "7k/P7/8/8/8/8/8/7K w - -", CASTLING_ALL}) {
        LoadFEN(fen);
        std::mt19937 random(5);
        for (int ply = 0; ply < 400 && !LegalMoves().empty(); ++ply) {
            const std::vector<Move> moves = LegalMoves();
            for (const Move move : moves) {
                const bool isDraw = IsDrawAfter(move, HashKeyAfter(move));
                MakeMove(move, 1);
                EXPECT_EQ(isDraw, IsDraw()) << MoveToText(move) << " in ply " << ply << " from " << fen;
                draws += isDraw;
                UnmakeMove();
            }
            MakeMove(moves[random() % moves.size()], 1);
        }
    }
    EXPECT_GT(draws, 100);
}

TEST_F(DrawsTest, FewPiecesDrawWhereNobodyCanWin) {
    const struct {
        const char* Fen;
        int Alpha, Beta, Score;  // Score 1: the node is searched
    } rows[] = {
        {"4k3/8/8/8/8/8/8/B3K3 w - -", -900, 900, 0},
        {"4k1n1/8/8/8/8/8/8/B3K3 w - -", -900, 900, 1},  // 600 in all
        {"4k3/4p3/8/8/8/8/8/B3K3 w - -", 20, 21, 20},    // White has nothing to win with
        {"4k3/4p3/8/8/8/8/8/B3K3 w - -", -20, -19, 1},   // but may lose
        {"4k3/4p3/8/8/8/8/8/B3K3 b - -", -20, -19, 0},
        {"4k3/4p3/8/8/8/8/8/B3K3 b - -", 20, 21, 1},
        {"k7/p1K5/8/3N4/8/8/8/8 w - -", 20, 21, 1},  // a man of its own can smother a king in the corner
        {"4k3/8/8/8/8/8/8/R3K3 b - -", 20, 21, 20},
    };
    for (const auto& row : rows) {
        LoadFEN(row.Fen);
        int score = 1;
        EXPECT_EQ(IsEndgameDraw(row.Alpha, row.Beta, &score), row.Score != 1) << row.Fen;
        EXPECT_EQ(score, row.Score) << row.Fen;
    }
}

}  // namespace
