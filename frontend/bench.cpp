#include "frontend/bench.h"

#include <algorithm>
#include <vector>

#include "book/booksettings.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/movescore.h"
#include "egtb/tablebases.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/weights.h"
#include "frontend/benchpositions.h"
#include "frontend/gamekeeper.h"
#include "frontend/hashtables.h"
#include "platform/output.h"
#include "platform/platform.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/ordering.h"
#include "search/root.h"
#include "search/search.h"
#include "search/statistics.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

struct FixedSetting {
    int* Variable;
    int Value;
};

// What a search depends on beside position, weights and personality. EngineSide follows the position.
const FixedSetting FixedSettings[] = {
    {&HashEntries, 524288},   {&PawnHashEntries, 262144},
    {&FoundPieces, 0},        {&Learning, 0},
    {&UseLearningData, 0},    {&UciMode, 0},
    {&PostMode, 0},           {&Pondering, 0},
    {&PonderSearch, 0},       {&InfiniteSearch, 0},
    {&Analyzing, 0},          {&QuietPreSearch, 0},
    {&EngineTime, NO_CLOCK},  {&MoveTime, 0},
    {&MaxDepth, BENCH_DEPTH}, {&NodeLimit, 0},
    {&MateSearch, 0},         {&SearchMovesCount, 0},
    {&DrawScore, 0},          {&MultiPvCount, 1},
    {&UseLearningData, 0},
};

// Gives the settings their fixed values while it lives. One that input has changed meanwhile, as "time" may,
// keeps the change.
class SettingsKeeper {
  public:
    SettingsKeeper() {
        for (const auto& [variable, value] : FixedSettings) {
            values_.push_back(*variable);
            *variable = value;
        }
        SetAggressivity(100);
        SetCowardice(100);
        SetTropism(100);
    }
    ~SettingsKeeper() {
        for (size_t i = 0; i < values_.size(); ++i) {
            const auto& [variable, value] = FixedSettings[i];
            if (*variable == value) *variable = values_[i];
        }
        SetAggressivity(aggressivity_);
        SetCowardice(cowardice_);
        SetTropism(tropism_);
    }
    SettingsKeeper(const SettingsKeeper&) = delete;
    SettingsKeeper& operator=(const SettingsKeeper&) = delete;

  private:
    std::vector<int> values_;
    const int aggressivity_ = Aggressivity.Raw, cowardice_ = Cowardice.Raw, tropism_ = Tropism.Raw;
};

// Gives the tables the sizes that are set.
void ReallocateTables() {
    ReallocateTransposition();
    ReallocatePawnHash();
}

// Forgets all that one search leaves to the next.
void ForgetSearches() {
    ClearHashTables();
    ClearOrdering();
    ClearCheckReplies();
    ResetRootMemory();
}

// Searches a position; returns the milliseconds that took.
int64_t SearchBenchPosition(const char* fen) {
    ForgetSearches();
    LoadFEN(fen);
    EngineSide = board.SideToMove;
    ClearRequests();
    StartSearchClock();
    SetNoTimeLimit();
    const int64_t start = ClockMs();
    IterativeDeepening(BENCH_DEPTH, 0);
    return ClockMs() - start;
}

// Searches all the positions; false when input has ended that.
bool SearchBenchPositions() {
    int64_t nodes = 0, time = 0;
    int count = 0;
    ResetStatistics();
    for (const char* fen : BENCH_POSITIONS) {
        time += SearchBenchPosition(fen);
        if (StopRequested) return false;
        nodes += Nodes;
        Print("Position %d: %lld nodes\n", ++count, static_cast<long long>(Nodes));
        FlushOutput();
    }
    PrintStatistics();
    Print("Nodes: %lld\nTime: %lld ms\n", static_cast<long long>(nodes), static_cast<long long>(time));
    Print("Nodes per second: %lld\n", static_cast<long long>(nodes * 1000 / std::max<int64_t>(time, 1)));
    return true;
}

}  // namespace

void RunBench() {
    const GameKeeper game;
    {
        const SettingsKeeper settings;
        ReallocateTables();
        if (!SearchBenchPositions()) Print("Bench stopped\n");
        FlushOutput();
        ClearRequests();
    }
    ReallocateTables();
    ForgetSearches();
}
