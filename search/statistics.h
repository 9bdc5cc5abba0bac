#pragma once

#include <cstdint>

// Counts of what the devices of the search do, kept in builds with asserts only.

#ifdef NDEBUG
constexpr bool COUNTS_STATISTICS = false;
#else
constexpr bool COUNTS_STATISTICS = true;
#endif

enum Statistic : int {
    STAT_SEARCH_NODES,
    STAT_QUIESCE_NODES,
    STAT_HASH_PROBES,
    STAT_HASH_HITS,
    STAT_HASH_CUTOFFS,
    STAT_EVALUATIONS,
    STAT_EVAL_CACHE_HITS,
    STAT_LAZY_EVALUATIONS,
    STAT_LAZY_CUTOFFS,
    STAT_NULL_THREATS,
    STAT_NULL_TRIES,
    STAT_NULL_CUTOFFS,
    STAT_MATE_THREATS,
    STAT_PRESCANS,
    STAT_PRESCAN_CUTOFFS,
    STAT_PRESCAN_MATES,
    STAT_CUTOFFS,
    STAT_FIRST_CUTOFFS,
    STAT_REDUCED,
    STAT_RESEARCHED,
    STAT_FUTILE,
    STAT_QUIESCE_FUTILE,
    STAT_PAWN_ENDINGS,
    STAT_RECAPTURES,
    STAT_CHECKS,
    STAT_PASSED_PUSHES,
    STAT_THREATS,
    STAT_QUIET_CHECKS,
    STAT_BOXED_KINGS,
    STAT_HARMLESS_CHECKS,
    STATISTIC_COUNT
};

extern int64_t Statistics[STATISTIC_COUNT];

inline void Count([[maybe_unused]] Statistic statistic) {
    if constexpr (COUNTS_STATISTICS) ++Statistics[statistic];
}

void ResetStatistics();

// Prints the table, a line each: name, count and, where it has a whole, its share of it. Nothing in builds
// that don't count.
void PrintStatistics();
