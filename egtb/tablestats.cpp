#include "egtb/tablestats.h"

#include <algorithm>
#include <mutex>

#include "egtb/parallel.h"
#include "egtb/tablemoves.h"

namespace {

using Longest = TableStatistics::Longest;

void Merge(Longest* longest, const Longest& other) {
    if (other.Number < 0 || other.Moves < longest->Moves) return;
    if (longest->Number < 0 || other.Moves > longest->Moves) {
        *longest = other;
        return;
    }
    longest->Positions += other.Positions;
    longest->Number = std::min(longest->Number, other.Number);
}

// The counts of one side to move.
struct Tally {
    TableStatistics::SideToMove Side;
    int64_t WhiteZugzwangs = 0, BlackZugzwangs = 0, FullZugzwangs = 0;

    void Add(TableValue value, int64_t images, int64_t number) {
        if (value == TABLE_DRAW) {
            Side.Draws += images;
        } else {
            (IsWin(value) ? Side.Wins : Side.Losses) += images;
            Merge(IsWin(value) ? &Side.Win : &Side.Loss, {MateMoves(value), images, number});
        }
    }

    // Both values of a position, each from its side to move's view.
    void AddPair(TableValue white, TableValue black) {
        if (white == TABLE_DRAW && IsLoss(black)) ++WhiteZugzwangs;
        if (black == TABLE_DRAW && IsLoss(white)) ++BlackZugzwangs;
        if (IsLoss(white) && IsLoss(black)) ++FullZugzwangs;
    }

    void Add(const Tally& other) {
        Side.Wins += other.Side.Wins;
        Side.Draws += other.Side.Draws;
        Side.Losses += other.Side.Losses;
        Merge(&Side.Win, other.Side.Win);
        Merge(&Side.Loss, other.Side.Loss);
        WhiteZugzwangs += other.WhiteZugzwangs;
        BlackZugzwangs += other.BlackZugzwangs;
        FullZugzwangs += other.FullZugzwangs;
    }
};

Tally CountSide(const TableClass& tableClass, const TableStore& store, int side, int threads) {
    const LoadedTable& table = store.Table(tableClass.Number, side);
    Tally sum;
    std::mutex lock;
    ForAllParts(table.Index().OrdinarySize(), threads, [&](int64_t begin, int64_t end) {
        Tally tally;
        for (int64_t number = begin; number < end; ++number) {
            TablePosition position;
            if (!table.Index().PositionAt(number, &position)) continue;
            if (table.Index().IsSecondNumber(number, position)) continue;
            const int64_t images = tableClass.HasPawns() ? 2 : IsSymmetric(position) ? 4 : 8;
            const TableValue value = store.ValueOf(position);
            tally.Add(value, images, number);
            if (side == BLACK) continue;
            TablePosition passed = position;
            passed.SideToMove = BLACK;
            if (IsPlayable(passed)) tally.AddPair(value, store.ValueOf(passed));
        }
        const std::lock_guard guard(lock);
        sum.Add(tally);
    });
    return sum;
}

// What the moves of a position make of it; broken if what one of them leads to is.
TableValue ValueByMoves(const TablePosition& position, const TableStore& store) {
    TableValue best = TABLE_BROKEN;
    bool isDamaged = false;
    VisitMoves(position, [&](const TableMove&, const TablePosition& after) {
        const TableValue value = BeforeMove(store.EntryOf(after));
        if (value == TABLE_BROKEN) isDamaged = true;
        if (best == TABLE_BROKEN || IsBetter(value, best)) best = value;
    });
    if (isDamaged) return TABLE_BROKEN;
    return best == TABLE_BROKEN ? ValueWithoutMoves(position) : best;
}

}  // namespace

TableStatistics CountTable(const TableClass& tableClass, const TableStore& store, int threads) {
    TableStatistics statistics;
    const Tally white = CountSide(tableClass, store, WHITE, threads);
    statistics.Of[WHITE] = statistics.Of[BLACK] = white.Side;
    if (tableClass.HasBlackFile()) statistics.Of[BLACK] = CountSide(tableClass, store, BLACK, threads).Side;
    statistics.WhiteZugzwangs = white.WhiteZugzwangs;
    statistics.BlackZugzwangs = white.BlackZugzwangs;
    statistics.FullZugzwangs = white.FullZugzwangs;
    return statistics;
}

int64_t CountFaults(const TableClass& tableClass, const TableStore& store, int threads,
                    TablePosition* first) {
    int64_t faults = 0;
    for (const int side : {WHITE, BLACK}) {
        if (side == BLACK && !tableClass.HasBlackFile()) break;
        const LoadedTable& table = store.Table(tableClass.Number, side);
        int64_t firstNumber = table.Index().Size(), count = 0;
        std::mutex lock;
        ForAllParts(table.Index().Size(), threads, [&](int64_t begin, int64_t end) {
            for (int64_t number = begin; number < end; ++number) {
                TablePosition position;
                const bool isPlayable = table.Index().PositionAt(number, &position);
                const TableValue value = isPlayable ? ValueByMoves(position, store) : TABLE_BROKEN;
                // Nothing playable is broken, its own entry or those it leads to.
                if (table.Value(number) == value && isPlayable == (value != TABLE_BROKEN)) continue;
                const std::lock_guard guard(lock);
                ++count;
                firstNumber = std::min(firstNumber, number);
            }
        });
        if (count > 0 && faults == 0) {
            // What is broken has no position; the kings at least are where they would be.
            table.Index().PositionAt(firstNumber, first);
        }
        faults += count;
    }
    return faults;
}
