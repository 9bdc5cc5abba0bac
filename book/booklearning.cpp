#include "book/booklearning.h"

#include <algorithm>

#include "book/bookfile.h"
#include "book/booksettings.h"
#include "core/rewind.h"

int BookLearningDone = 1;

namespace {

constexpr unsigned COUNT_LIMIT = 255;  // exclusive
constexpr unsigned NEVER_PLAYED = 0;

// What a result adds to the good and to the bad results of a move.
struct Gain {
    unsigned Good, Bad;
};
constexpr Gain GAINS[] = {{0, 2}, {2, 0}, {1, 1}};

// Two thirds of each count, so that there is room for more and later results weigh more.
unsigned Rescale(unsigned good, unsigned bad) {
    return 2 * good / 3 + 256 * (2 * bad / 3);
}

void RescaleList(BookList* list) {
    for (BookEntry& entry : list->Entries) {
        const bool isLive = !entry.IsRemoved() && entry.Statistic != NEVER_PLAYED;
        if (isLive) entry.Statistic = Rescale(entry.Good(), entry.Bad());
    }
}

// As UpdateBookMove; the book is locked.
void UpdateLockedBook(BookResult result, Move move) {
    BookList list;
    if (IsBookVersion0 || !ReadBookList(&list)) return;
    BookEntry* const end = list.Entries + list.Count;
    BookEntry* const entry = std::find_if(list.Entries, end, [=](const BookEntry& candidate) {
        return !candidate.IsRemoved() && candidate.From == MoveFrom(move) && candidate.To == MoveTo(move);
    });
    if (entry == end) return;
    const unsigned good = entry->Good() + GAINS[result].Good, bad = entry->Bad() + GAINS[result].Bad;
    if (good < COUNT_LIMIT && bad < COUNT_LIMIT) {
        entry->Statistic = good + 256 * bad;
        WriteBookList(list, static_cast<int>(entry - list.Entries));
        return;
    }
    RescaleList(&list);
    entry->Statistic = Rescale(good, bad);
    WriteBookList(list, WHOLE_LIST);
}

}  // namespace

bool IsBookLearningDue() {
    return BookFile.IsOpen() && UseBookLearning && !BookLearningDone;
}

void LearnBookGame(BookResult result) {
    const FileLock lock(BookFile);
    if (BookFile.IsWritable() && !lock.IsHeld()) return;
    BookLearningDone = 1;
    if (!lock.IsHeld()) return;
    GameRewind game;
    // The first position of all is deliberately left out: its moves are what the author of the book plays.
    while (game.StepBack() && HistoryLength > 0 && game.StepBack() && HistoryLength > 0) {
        UpdateLockedBook(result, game.NextMove());
    }
}

void UpdateBookMove(BookResult result, Move move) {
    const FileLock lock(BookFile);
    if (lock.IsHeld()) UpdateLockedBook(result, move);
}

void ResetBookGame() {
    BookLearningDone = 0;
}
