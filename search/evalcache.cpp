#include "search/evalcache.h"

#include "core/board.h"
#include "core/keys.h"
#include "eval/evaluate.h"
#include "eval/weights.h"
#include "platform/platform.h"
#include "search/statistics.h"

namespace {

constexpr size_t ENTRIES = 524290;
constexpr uint64_t ADDRESSES = 524288;

EvalCacheEntry* EvalCache = nullptr;
EvalCacheEntry Uncached;  // stands in without a table

// What the scores in the cache were computed for.
int CachedSide = WHITE;
unsigned CachedVersion = 0;

void Fill(EvalCacheEntry& entry, uint64_t key) {
    const int side = board.SideToMove;
    const bool hasOther = entry.Key == key;
    Evaluate(&entry.Score[side]);
    // The evaluation doesn't tell what the other side's would be.
    if (!hasOther) entry.Score[ChangeSide(side)] = NO_EVALUATION;
    entry.Key = key;
    for (const int owner : {WHITE, BLACK}) {
        entry.Attacked[owner] = eval_info.attacked[owner];
        entry.Optimism[owner] = eval_info.optimism[owner];
    }
    entry.PawnStructure = eval_info.pawn_structure;
}

}  // namespace

const EvalCacheEntry& CachedEvaluation() {
    const uint64_t key = board.HashKey ^ CastleKeys[board.CastlingFlags];
    EvalCacheEntry& entry = EvalCache == nullptr ? Uncached : EvalCache[key % ADDRESSES];
    if (EvalCache != nullptr && entry.Key == key && entry.Score[board.SideToMove] != NO_EVALUATION) {
        Count(STAT_EVAL_CACHE_HITS);
    } else {
        Fill(entry, key);
    }
    return entry;
}

void PrefetchEvaluation(uint64_t key) {
    if (EvalCache == nullptr) return;
    const EvalCacheEntry& entry = EvalCache[key % ADDRESSES];
    __builtin_prefetch(&entry);
    __builtin_prefetch(&entry.PawnStructure);
}

void RefreshEvalCache() {
    if (CachedSide == EngineSide && CachedVersion == EvaluationVersion) return;
    CachedSide = EngineSide;
    CachedVersion = EvaluationVersion;
    ClearEvalCache();
}

bool AllocateEvalCache() {
    FreeEvalCache();
    EvalCache = static_cast<EvalCacheEntry*>(AllocateTable(ENTRIES * sizeof(EvalCacheEntry)));
    if (EvalCache == nullptr) return false;
    ClearEvalCache();
    return true;
}

void ClearEvalCache() {
    if (EvalCache == nullptr) return;
    for (size_t i = 0; i < ENTRIES; ++i) EvalCache[i].Key = EMPTY_KEY;
}

void FreeEvalCache() {
    FreeTable(EvalCache);
    EvalCache = nullptr;
}
