#include "tests/support/walker.h"

#include <algorithm>
#include <iterator>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movelist.h"
#include "core/movetext.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"

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

std::vector<Move> LegalOnes(const std::vector<Move>& moves) {
    std::vector<Move> legal;
    std::copy_if(moves.begin(), moves.end(), std::back_inserter(legal), LeavesKingSafe);
    std::sort(legal.begin(), legal.end());
    return legal;
}

std::string TextOf(const std::vector<Move>& moves) {
    std::string text;
    for (const Move move : moves) text += (text.empty() ? "" : " ") + std::string(MoveToText(move));
    return text;
}

int VisitPositions(int positions, uint64_t seed, const std::function<void()>& visit) {
    constexpr int GAME_PLIES = 120;
    std::mt19937_64 random(seed);
    int visited = 0;
    while (true) {
        for (const char* fen : NASTY_POSITIONS) {
            LoadFEN(fen);
            for (int ply = 0; ply < GAME_PLIES; ++ply) {
                SCOPED_TRACE(SlowPosition::FromBoard().Text());
                visit();
                if (++visited >= positions || testing::Test::HasFailure()) return visited;
                const std::vector<Move> legal = LegalOnes(MovesOf(GenerateMoves));
                if (legal.empty()) break;
                Move move = legal[random() % legal.size()];
                const auto isRare = [](Move other) {
                    return MovePromotion(other) != 0 || IsEnPassant(other);
                };
                const auto rare = std::find_if(legal.begin(), legal.end(), isRare);
                if (rare != legal.end() && random() % 4 == 0) {
                    move = *(rare + static_cast<int>(random() % std::count_if(rare, legal.end(), isRare)));
                }
                MakeMove(move, 1);
            }
        }
    }
}
