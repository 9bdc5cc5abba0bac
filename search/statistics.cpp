#include "search/statistics.h"

#include <algorithm>

#include "platform/output.h"

int64_t Statistics[STATISTIC_COUNT];

namespace {

struct Row {
    Statistic Part;
    const char* Name;
    Statistic Whole;  // itself where there is none
};

constexpr Row Rows[] = {
    {STAT_SEARCH_NODES, "full-width nodes", STAT_SEARCH_NODES},
    {STAT_QUIESCE_NODES, "quiescence nodes", STAT_QUIESCE_NODES},
    {STAT_HASH_PROBES, "hash probes", STAT_HASH_PROBES},
    {STAT_HASH_HITS, "  hits", STAT_HASH_PROBES},
    {STAT_HASH_CUTOFFS, "  cut-offs", STAT_HASH_PROBES},
    {STAT_EVALUATIONS, "evaluations wanted", STAT_EVALUATIONS},
    {STAT_EVAL_CACHE_HITS, "  found in the cache", STAT_EVALUATIONS},
    {STAT_LAZY_EVALUATIONS, "  by material alone", STAT_EVALUATIONS},
    {STAT_LAZY_CUTOFFS, "lazy material cut-offs", STAT_LAZY_CUTOFFS},
    {STAT_NULL_THREATS, "null moves left out for a threat", STAT_NULL_THREATS},
    {STAT_NULL_TRIES, "null moves tried", STAT_NULL_TRIES},
    {STAT_NULL_CUTOFFS, "  cut-offs", STAT_NULL_TRIES},
    {STAT_MATE_THREATS, "  mate threats", STAT_NULL_TRIES},
    {STAT_PRESCANS, "pre-scans", STAT_PRESCANS},
    {STAT_PRESCAN_CUTOFFS, "  cut-offs", STAT_PRESCANS},
    {STAT_PRESCAN_MATES, "  mates in one", STAT_PRESCANS},
    {STAT_CUTOFFS, "cut-offs by a move", STAT_CUTOFFS},
    {STAT_FIRST_CUTOFFS, "  by the first", STAT_CUTOFFS},
    {STAT_REDUCED, "reduced searches", STAT_REDUCED},
    {STAT_RESEARCHED, "  searched again", STAT_REDUCED},
    {STAT_FUTILE, "futile moves skipped", STAT_FUTILE},
    {STAT_QUIESCE_FUTILE, "futile captures skipped", STAT_QUIESCE_FUTILE},
    {STAT_PAWN_ENDINGS, "extended: into pawn endings", STAT_PAWN_ENDINGS},
    {STAT_RECAPTURES, "extended: recaptures", STAT_RECAPTURES},
    {STAT_CHECKS, "extended: checks", STAT_CHECKS},
    {STAT_PASSED_PUSHES, "passed-pawn pushes", STAT_PASSED_PUSHES},
    {STAT_THREATS, "extended: threats", STAT_THREATS},
    {STAT_QUIET_CHECKS, "quiet checks searched", STAT_QUIET_CHECKS},
    {STAT_BOXED_KINGS, "quiet checks for a boxed king", STAT_BOXED_KINGS},
    {STAT_HARMLESS_CHECKS, "harmless checks", STAT_HARMLESS_CHECKS},
};

double PercentOf(const Row& row) {
    const int64_t whole = Statistics[row.Whole];
    return whole == 0 ? 0.0 : 100.0 * static_cast<double>(Statistics[row.Part]) / static_cast<double>(whole);
}

}  // namespace

void ResetStatistics() {
    std::fill_n(Statistics, STATISTIC_COUNT, int64_t{0});
}

void PrintStatistics() {
    if constexpr (!COUNTS_STATISTICS) return;
    for (const Row& row : Rows) {
        Print("%-36s %12lld", row.Name, static_cast<long long>(Statistics[row.Part]));
        if (row.Whole != row.Part) Print(" %6.2f %%", PercentOf(row));
        Print("\n");
    }
}
