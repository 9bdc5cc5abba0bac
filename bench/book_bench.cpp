#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "book/bookkeys.h"
#include "book/learnfile.h"
#include "book/pgnreader.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/movelist.h"
#include "core/san.h"

// What making a book out of games consists of, and the look-ups of a game.

namespace {

constexpr char GAME[] =
    "[Event \"A game\"]\n[Site \"somewhere\"]\n[White \"one\"]\n[Black \"another\"]\n[Result \"1-0\"]\n\n"
    "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Ba4 Nf6 5. O-O Be7 6. Re1 b5 7. Bb3 d6 8. c3 O-O 9. h3 Na5 10. Bc2 c5\n"
    "11. d4 Qc7 12. Nbd2 cxd4 13. cxd4 Nc6 14. Nb3 a5 15. Be3 a4 16. Nbd2 Bd7 17. Rc1 Qb7 1-0\n\n";

// Games are read as many plies deep as the argument says.
void ReadGames(benchmark::State& state) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), &std::fclose);
    for (int i = 0; i < 1000; ++i) std::fputs(GAME, file.get());
    PgnGame game;
    for (auto _ : state) {
        std::rewind(file.get());
        PgnReader reader(file.get(), static_cast<int>(state.range(0)));
        while (reader.Next(game) == PgnStatus::GAME) benchmark::DoNotOptimize(game.Moves.data());
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

void ResolveMoves(benchmark::State& state) {
    ResetBoard();
    MoveListTop = 0;
    GenerateMoves();
    std::vector<std::string> texts;
    for (int i = 0; i < MoveListTop; ++i) texts.emplace_back(MoveToSan(MoveList[i].Move));
    MoveListTop = 0;
    for (auto _ : state) {
        for (const std::string& text : texts) {
            Move move = NO_MOVE;
            benchmark::DoNotOptimize(ResolveSan(text.c_str(), &move));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}

void MakeBookKeys(benchmark::State& state) {
    ResetBoard();
    for (auto _ : state) benchmark::DoNotOptimize(CurrentBookKey());
    state.SetItemsProcessed(state.iterations());
}

// A look into the learning file, as the search takes one in deep nodes; the argument says whether it knows
// the position. The file stands in a directory of its own meanwhile.
void FindLearnedPosition(benchmark::State& state) {
    namespace fs = std::filesystem;
    const fs::path home = fs::current_path(), place = fs::temp_directory_path() / "kestrovan-bench";
    fs::create_directory(place);
    fs::current_path(place);
    OpenLearningFile();
    const LearnedKey known{0x12345678, 0x9ABCDEF0};
    AddLearned({600, -50, NO_MOVE, known});
    LearnedRecord record;
    uint32_t at = 0;
    const LearnedKey wanted = state.range(0) != 0 ? known : LearnedKey{known.Key1, 0};
    for (auto _ : state) benchmark::DoNotOptimize(FindLearned(wanted, &record, &at));
    state.SetItemsProcessed(state.iterations());
    CloseLearningFile();
    fs::current_path(home);
    fs::remove_all(place);
}

}  // namespace

BENCHMARK(FindLearnedPosition)->Arg(0)->Arg(1);
BENCHMARK(ReadGames)->Arg(24)->Arg(400);
BENCHMARK(ResolveMoves);
BENCHMARK(MakeBookKeys);
