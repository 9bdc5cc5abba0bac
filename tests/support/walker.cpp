#include "tests/support/walker.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <random>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "tests/support/positions.h"

void CoreTest::SetUp() {
    ResetBoard();
    MoveListTop = 0;
}

bool IsCastling(Move move) {
    return MovePiece(move) == KING && std::abs(MoveTo(move) - MoveFrom(move)) == 2;
}

std::vector<Move> MovesOf(const std::function<void()>& generate) {
    const int start = MoveListTop;
    generate();
    std::vector<Move> moves;
    for (int i = start; i < MoveListTop; ++i) moves.push_back(MoveList[i].Move);
    MoveListTop = start;
    return moves;
}

std::vector<Move> LegalMoves() {
    std::vector<Move> moves = MovesOf(GenerateMoves);
    std::erase_if(moves, [](Move move) { return !LeavesKingSafe(move); });
    return moves;
}

std::string TextOf(const std::vector<Move>& moves) {
    std::string text;
    for (const Move move : moves) text += (text.empty() ? "" : " ") + std::string(MoveToText(move));
    return text;
}

void VisitPositions(int positions, uint64_t seed, const std::function<void()>& visit) {
    constexpr int GAME_PLIES = 120;
    std::mt19937_64 random(seed);
    while (true) {
        for (const char* fen : NASTY_POSITIONS) {
            LoadFEN(fen);
            std::vector<Move> played;
            for (int ply = 0; ply < GAME_PLIES; ++ply) {
                visit();
                if (testing::Test::HasFailure()) ADD_FAILURE() << fen << " after " << TextOf(played);
                if (--positions <= 0 || testing::Test::HasFailure()) return;
                const std::vector<Move> legal = LegalMoves();
                if (legal.empty()) break;
                std::vector<Move> rare;
                std::copy_if(legal.begin(), legal.end(), std::back_inserter(rare),
                             [](Move move) { return MovePromotion(move) != EMPTY || IsEnPassant(move); });
                const std::vector<Move>& choice = rare.empty() || random() % 4 != 0 ? legal : rare;
                played.push_back(choice[random() % choice.size()]);
                MakeMove(played.back(), 1);
            }
        }
    }
}
