#include <benchmark/benchmark.h>

#include "core/attacks.h"
#include "core/board.h"
#include "core/keys.h"
#include "eval/bitbase.h"
#include "eval/weights.h"

int main(int argc, char** argv) {
    InitHashKeys();
    InitAttackTables();
    InitPawnBitbase();
    InitWeights();
    ResetBoard();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
