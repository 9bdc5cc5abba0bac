#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "eval/endingview.h"
#include "eval/evaluate.h"
#include "search/root.h"
#include "tests/search/searchtest.h"

namespace {

// The program plays both sides of an ending that must be won, with short searches.
class MatingTest : public SearchTest {
  protected:
    // A random legal position with White on move, nobody in check and no piece of White's to be taken. Two
    // bishops stand on squares of both colours.
    void PlaceMen(const std::string& pieces) {
        do {
            std::string squares(64, '1');
            for (const char letter : pieces) squares[FreeSquare(squares)] = letter;
            for (int rank = 1; rank < 8; ++rank) squares.insert(static_cast<size_t>(rank * 9 - 1), "/");
            LoadFEN((squares + " w - -").c_str());
        } while (!IsQuietStart());
    }

    // Whether the game ends with mate within fifty moves.
    static bool IsMateReached(int depth) {
        Forget();
        for (int ply = 0; ply < 100; ++ply) {
            if (LegalMoves().empty()) return IsKingAttacked(board.SideToMove);
            EngineSide = board.SideToMove;
            SearchBoard(depth);
            MakeMove(RootMove(0), 1);
        }
        return LegalMoves().empty() && IsKingAttacked(board.SideToMove);
    }

    void ExpectMates(const std::string& pieces, int games, int depth) {
        for (int game = 0; game < std::max(1, games / WORK_DIVISOR); ++game) {
            PlaceMen(pieces);
            // The text leaves the black king out.
            const std::string start = GetFEN() + " k" + std::to_string(board.KingSquare[BLACK]);
            EXPECT_TRUE(IsMateReached(depth)) << start;
        }
    }

  private:
    size_t FreeSquare(const std::string& squares) {
        size_t square = random_() % 64;
        while (squares[square] != '1') square = random_() % 64;
        return square;
    }

    static bool IsQuietStart() {
        const Bitboard white = board.Occupied[WHITE];
        const bool arePaired = board.PieceNumber[BISHOP][WHITE] < 2 || HasBishopPair(WHITE);
        const auto king = static_cast<int>(board.KingSquare[BLACK]);
        return arePaired && !IsKingAttacked(BLACK) && !(AttacksFrom(king, BLACK, KING) & white);
    }

    std::mt19937 random_{11};
};

TEST_F(MatingTest, MatesInFiftyMoves) {
    // Deep by the number: in such endings a quiet move costs three plies and more.
    ExpectMates("KQk", 10, 14);
    ExpectMates("KRk", 10, 14);
    ExpectMates("KBBk", 6, 18);
    ExpectMates("KBNk", 6, 22);
}

}  // namespace
