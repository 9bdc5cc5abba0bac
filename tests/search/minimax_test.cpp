#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <sstream>
#include <utility>

#include "core/attackquery.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "eval/bitbase.h"
#include "search/scores.h"
#include "tests/search/searchtest.h"
#include "tests/support/datafile.h"
#include "tests/support/positions.h"

namespace {

// What the search finds with all its devices, against what follows from the rules alone.
class MinimaxTest : public SearchTest {
  protected:
    // Whether the side to move can mate within so many moves of its own: full width, nothing left out.
    static bool CanMate(int moves) {
        const std::vector<Move> legal = moves > 0 ? LegalMoves() : std::vector<Move>{};
        return std::any_of(legal.begin(), legal.end(), [&](Move move) { return Mates(move, moves); });
    }

    static bool Mates(Move move, int moves) {
        MakeMove(move, 1);
        const bool mates = IsLost(moves - 1);
        UnmakeMove();
        return mates;
    }

    // Whether the side to move is mated, or will be within so many moves of the opponent whatever it does.
    static bool IsLost(int moves) {
        const std::vector<Move> legal = LegalMoves();
        if (legal.empty()) return IsKingAttacked(board.SideToMove);
        return moves > 0 && std::all_of(legal.begin(), legal.end(), [&](Move move) {
                   MakeMove(move, 1);
                   const bool canMate = CanMate(moves);
                   UnmakeMove();
                   return canMate;
               });
    }

    // Puts the men, White's in capitals, on squares at random in the corner of the first `size` files and
    // ranks: a legal position with two moves or more.
    void Place(const std::string& men, unsigned size) {
        do {
            ClearBoard();
            board.CastlingFlags = 0;
            board.SideToMove = static_cast<int>(random_() % 2);
            for (const char letter : men) {
                const bool isWhite = letter >= 'A' && letter <= 'Z';
                const size_t piece = std::string(PIECE_LETTERS).find(isWhite ? letter : letter - 'a' + 'A');
                int square = 0;
                do {
                    square =
                        MakeSquare(static_cast<int>(random_() % size), static_cast<int>(random_() % size));
                } while (board.PieceOn[square] != EMPTY || (piece == PAWN && square % 56 < 8));
                AddPiece(square, isWhite ? WHITE : BLACK, static_cast<unsigned>(piece));
            }
        } while (IsKingAttacked(ChangeSide(board.SideToMove)) || LegalMoves().size() < 2);
    }

  private:
    std::mt19937 random_{7};
};

TEST_F(MinimaxTest, FindsPublishedMates) {
    constexpr int Depths[] = {0, 3, 9, 14, 20};  // by length, enough for every row
    constexpr int PROVED = WORK_DIVISOR > 1 ? 2 : 3;
    std::array<int, 5> found{};
    for (const std::string& line : ReadDataLines("mates.txt")) {
        const int moves = std::atoi(line.c_str());
        Forget();
        Search(line.c_str() + 2, Depths[moves]);
        EXPECT_EQ(RootScore, MATE + 1 - 2 * moves) << line;
        EXPECT_TRUE(moves > PROVED || Mates(RootMove(0), moves)) << line << ": " << MoveToText(RootMove(0));
        ++found[static_cast<size_t>(moves)];
    }
    EXPECT_EQ(*std::min_element(found.begin() + 1, found.end()), 15);
}

// Mates for and against the side to move, wherever they turn up.
TEST_F(MinimaxTest, AgreesOnEveryShortMate) {
    std::array<int, 4> counts{};
    for (const char* men : {"KQRk", "KRRkp", "KQNkn", "KBBPkp", "KQPkrp", "kqrK", "kqqKR", "krnpKP"}) {
        for (int i = 0; i < (WORK_DIVISOR > 1 ? 1 : 6); ++i) {
            Place(men, 5);
            const int length = CanMate(1) ? 1 : CanMate(2) ? 2 : 0, lost = length == 0 && IsLost(1);
            ClearHash();
            SearchBoard(8);
            // The text leaves the black king out.
            const std::string position = GetFEN() + " k" + std::to_string(board.KingSquare[BLACK]);
            if (length == 0 && lost == 0) {
                EXPECT_TRUE(RootScore < MATE - 3 && RootScore > 2 - MATE) << position << ": " << RootScore;
            } else {
                EXPECT_EQ(RootScore, lost ? 2 - MATE : MATE + 1 - 2 * length) << position;
            }
            ++counts[static_cast<size_t>(lost ? 3 : length)];
        }
    }
    EXPECT_GE(*std::min_element(counts.begin(), counts.end()), WORK_DIVISOR > 1 ? 0 : 1);
}

TEST_F(MinimaxTest, AgreesOnKingAndPawn) {
    for (int i = 0; i < 300 / WORK_DIVISOR; ++i) {
        const int side = i % 2;
        Place(side == WHITE ? "KPk" : "kpK", 8);
        SearchBoard(9);
        const int score = board.SideToMove == side ? RootScore : -RootScore;
        const auto king = [&](int owner) { return static_cast<int>(board.KingSquare[owner]); };
        const int pawn = std::countr_zero(board.Pieces[PAWN][side]);
        const bool isWon = IsPawnEndingWon(side, king(side), king(ChangeSide(side)), pawn, board.SideToMove);
        EXPECT_TRUE(isWon ? score > 150 : std::abs(score) < 100) << GetFEN() << ": " << score;
    }
}

TEST_F(MinimaxTest, JudgesRaces) {
    for (const auto& [fen, result] :
         std::initializer_list<std::pair<const char*, int>>{
             {"8/8/1P6/8/4p3/8/8/K6k w - -", 1},     // two moves ahead
             {"8/8/8/8/5p2/8/1P6/K6k w - -", -1},    // a move behind
             {"7K/8/k1P5/7p/8/8/8/8 w - -", 0},      // a king that follows two aims at once
             {"8/2P5/8/8/3r4/8/2K5/k7 w - -", 1},    // a rook wins, a queen stalemates
             {"8/5ppp/8/5PPP/8/8/8/k6K w - -", 1}})  // a breakthrough
    {
        Forget();
        Search(fen, 18);
        EXPECT_EQ((RootScore > 200) - (RootScore < -200), result) << fen << ": " << RootScore;
    }
}

TEST_F(MinimaxTest, PrintsLinesThatCanBePlayedToTheirEnd) {
    int moves = 0;
    for (MultiPvCount = 1; MultiPvCount <= 3; MultiPvCount += 2) {
        for (const char* fen : NASTY_POSITIONS) {
            Forget();
            UciMode = 1;
            NodeLimit = 60'000;
            SetNoTimeLimit();
            testing::internal::CaptureStdout();
            Search(fen, 20);
            std::istringstream output(testing::internal::GetCapturedStdout());
            for (std::string line; std::getline(output, line);) {
                const size_t start = line.find(" pv ");
                if (start == std::string::npos) continue;
                LoadFEN(fen);
                for (const std::string& text : SplitWords(line.substr(start + 4))) {
                    const Move move = TextToMove(text.c_str());
                    ASSERT_TRUE(IsLegalMove(move)) << fen << ": " << text << " of " << line;
                    MakeMove(move, 1);
                    ++moves;
                }
            }
        }
    }
    EXPECT_GT(moves, 500);
}

}  // namespace
