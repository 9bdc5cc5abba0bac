#include <benchmark/benchmark.h>

#include <vector>

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/board.h"
#include "core/checks.h"
#include "core/evasions.h"
#include "core/exchange.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movegen.h"
#include "core/movetest.h"
#include "core/perft.h"

// Each benchmark runs on the same positions, chosen by its first argument.

namespace {

constexpr const char* Positions[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "r1bq1rk1/pp2ppbp/2np1np1/8/2BNP3/2N1BP2/PPPQ2PP/R3K2R w KQ -",
    "8/2k2p2/1p1p2p1/p1pP3p/P1P1PK1P/1P3P2/8/8 w - -",
};

void LoadPosition(const benchmark::State& state) {
    LoadFEN(Positions[state.range(0)]);
}

std::vector<Move> ListMoves() {
    MoveListTop = 0;
    GenerateMoves();
    std::vector<Move> moves;
    for (int i = 0; i < MoveListTop; ++i) moves.push_back(MoveList[i].Move);
    MoveListTop = 0;
    return moves;
}

// Reports how many of the things measured are done in a second.
void CountItems(benchmark::State& state, size_t perIteration) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(perIteration));
}

void MakeUnmake(benchmark::State& state) {
    LoadPosition(state);
    const std::vector<Move> moves = ListMoves();
    for (auto _ : state) {
        for (const Move move : moves) {
            MakeMove(move, 1);
            UnmakeMove();
        }
    }
    CountItems(state, moves.size());
}

template <typename Generate>
void MeasureGenerator(benchmark::State& state, Generate generate) {
    LoadPosition(state);
    for (auto _ : state) {
        MoveListTop = 0;
        generate();
        benchmark::DoNotOptimize(MoveListTop);
    }
    CountItems(state, static_cast<size_t>(MoveListTop));
    MoveListTop = 0;
}

void Captures(benchmark::State& state) {
    MeasureGenerator(state, [] { GenerateCaptures(board.Occupied[ChangeSide(board.SideToMove)]); });
}

void Quiet(benchmark::State& state) {
    MeasureGenerator(state, [] { GenerateQuiet(0); });
}

// Calls a second: on most boards there are few checks or none.
void QuietChecks(benchmark::State& state) {
    MeasureGenerator(state, [] { benchmark::DoNotOptimize(GenerateQuietChecks(1)); });
    CountItems(state, 1);
}

void Promotions(benchmark::State& state) {
    LoadFEN("8/PPP2P1k/8/8/8/8/5K2/8 w - -");
    for (auto _ : state) {
        MoveListTop = 0;
        GeneratePromotions();
        benchmark::DoNotOptimize(MoveListTop);
    }
    CountItems(state, static_cast<size_t>(MoveListTop));
    MoveListTop = 0;
}

void Evasions(benchmark::State& state) {
    LoadFEN("r1bq1rk1/pp2ppbp/2np2p1/8/2BNP3/2N1Bn2/PPPQ2PP/R3K2R w KQ -");
    for (auto _ : state) {
        MoveListTop = 0;
        GenerateEvasions();
        benchmark::DoNotOptimize(MoveListTop);
    }
    CountItems(state, static_cast<size_t>(MoveListTop));
    MoveListTop = 0;
}

void SquareAttacked(benchmark::State& state) {
    LoadPosition(state);
    for (auto _ : state) {
        for (int square = 0; square < 64; ++square) {
            benchmark::DoNotOptimize(IsSquareAttacked(WHITE, square));
            benchmark::DoNotOptimize(IsSquareAttacked(BLACK, square));
        }
    }
    CountItems(state, 128);
}

template <typename Test>
void MeasureMoveTest(benchmark::State& state, Test test) {
    LoadPosition(state);
    const std::vector<Move> moves = ListMoves();
    for (auto _ : state) {
        for (const Move move : moves) benchmark::DoNotOptimize(test(move));
    }
    CountItems(state, moves.size());
}

void Checking(benchmark::State& state) {
    MeasureMoveTest(state, GivesCheck);
}

void Possible(benchmark::State& state) {
    MeasureMoveTest(state, IsPossible);
}

// Every move as if it were a capture: the board is asked, not only the values.
void SafeCapture(benchmark::State& state) {
    MeasureMoveTest(state, IsSafeMove);
}

void PerftWalk(benchmark::State& state) {
    LoadPosition(state);
    int count = 0;
    for (auto _ : state) benchmark::DoNotOptimize(count = Perft(4));
    CountItems(state, static_cast<size_t>(count));
}

void OnPositions(benchmark::internal::Benchmark* benchmark) {
    for (size_t i = 0; i < std::size(Positions); ++i) benchmark->Arg(static_cast<int64_t>(i));
}

BENCHMARK(MakeUnmake)->Apply(OnPositions);
BENCHMARK(Captures)->Apply(OnPositions);
BENCHMARK(Promotions);
BENCHMARK(Quiet)->Apply(OnPositions);
BENCHMARK(QuietChecks)->Apply(OnPositions);
BENCHMARK(Evasions);
BENCHMARK(SquareAttacked)->Apply(OnPositions);
BENCHMARK(SafeCapture)->Apply(OnPositions);
BENCHMARK(Checking)->Apply(OnPositions);
BENCHMARK(Possible)->Apply(OnPositions);
BENCHMARK(PerftWalk)->Apply(OnPositions)->Unit(benchmark::kMillisecond);

}  // namespace
