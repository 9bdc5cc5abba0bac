#include "tests/support/walker.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <random>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "tests/support/positions.h"

void CoreTest::SetUp() {
    ResetBoard();
    MoveListTop = 0;
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

void VisitRandomBoards(int boards, uint64_t seed, const std::function<void()>& visit) {
    std::mt19937_64 random(seed);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<uint64_t>(limit)); };
    while (boards > 0) {
        std::string men(64, '1');
        const auto place = [&](int side, int file, int rank, char letter) {
            char& man = men[static_cast<size_t>((side == WHITE ? 7 - rank : rank) * 8 + file)];
            if (man == '1') man = static_cast<char>(side == WHITE ? letter : std::tolower(letter));
        };
        const int pieces = below(8), pawns = below(9);
        for (const int side : {WHITE, BLACK}) {
            if (below(3) == 0) {
                place(side, 4, 0, 'K');
                for (const int file : {0, 7}) place(side, file, 0, "R1"[below(2)]);
            } else {
                place(side, below(8), below(4) == 0 ? below(8) : below(2), 'K');
            }
            for (int i = below(3); i < pawns; ++i)
                place(side, below(8), 1 + std::min(below(6), below(6)), 'P');
            for (int i = below(3); i < pieces; ++i) place(side, below(8), below(8), "QQQRRBBNN"[below(9)]);
        }
        std::string text;
        for (size_t row = 0; row < 64; row += 8) text += men.substr(row, 8) + (row < 56 ? "/" : "");
        text += below(2) == 0 ? " w KQkq -" : " b KQkq -";
        LoadFEN(text.c_str());
        if (FindPositionFault() != nullptr) continue;
        visit();
        if (testing::Test::HasFailure()) ADD_FAILURE() << text;
        if (--boards <= 0 || testing::Test::HasFailure()) return;
    }
}
