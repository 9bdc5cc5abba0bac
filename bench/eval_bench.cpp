#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"

namespace {

constexpr const char* Openings[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "r1bq1rk1/pp2ppbp/2np1np1/8/2BNP3/2N1BP2/PPPQ2PP/R3K2R w KQ -",
    "2r2rk1/1bqnbppp/p2ppn2/1p6/3NPP2/1BN1B3/PPP1Q1PP/3R1R1K w - -",
    "8/2k2p2/1p1p2p1/p1pP3p/P1P1PK1P/1P3P2/8/8 w - -",
    "3r2k1/5ppp/2p5/8/1p2R3/1P4P1/P4P1P/6K1 w - -",
};

// Plays a random move that leaves the king safe; false when there is none.
bool PlayRandomMove(uint64_t& seed) {
    MoveListTop = 0;
    GenerateMoves();
    std::vector<Move> moves;
    for (int i = 0; i < MoveListTop; ++i) {
        if (LeavesKingSafe(MoveList[i].Move)) moves.push_back(MoveList[i].Move);
    }
    MoveListTop = 0;
    if (moves.empty()) return false;
    seed = seed * 6364136223846793005u + 1442695040888963407u;
    MakeMove(moves[(seed >> 33) % moves.size()], 1);
    return true;
}

// Positions of random games, with about one change of pawns in three moves, as a search meets them.
std::vector<Board> MakePositions() {
    constexpr int GAMES = 40, PLIES = 50;
    std::vector<Board> positions;
    uint64_t seed = 1;
    for (const char* opening : Openings) {
        for (int game = 0; game < GAMES; ++game) {
            LoadFEN(opening);
            for (int ply = 0; ply < PLIES && PlayRandomMove(seed); ++ply) positions.push_back(board);
        }
    }
    ResetBoard();
    return positions;
}

void EvaluateAll(benchmark::State& state, int pawnHashEntries) {
    const std::vector<Board> positions = MakePositions();
    const int savedEntries = PawnHashEntries;
    PawnHashEntries = pawnHashEntries;
    AllocatePawnHash();
    for (auto _ : state) {
        for (const Board& position : positions) {
            board = position;
            int result = 0;
            Evaluate(&result);
            benchmark::DoNotOptimize(result);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(positions.size()));
    PawnHashEntries = savedEntries;
    FreePawnHash();
    ResetBoard();
}

// Every pawn skeleton is computed anew, and every one is found.
void EvaluateCold(benchmark::State& state) {
    EvaluateAll(state, 0);
}
void EvaluateWarm(benchmark::State& state) {
    EvaluateAll(state, PawnHashEntries);
}

BENCHMARK(EvaluateCold)->Unit(benchmark::kMillisecond);
BENCHMARK(EvaluateWarm)->Unit(benchmark::kMillisecond);

}  // namespace
