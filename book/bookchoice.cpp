#include "book/bookchoice.h"

#include <cstdlib>

#include "book/bookfile.h"
#include "book/bookmove.h"
#include "book/booksettings.h"
#include "book/learnfile.h"
#include "core/board.h"
#include "platform/output.h"

namespace {

Move MoveOfEntry(const BookEntry& entry) {
    return LegalBookMove(entry.From, entry.To);
}

// The share of good results: 0..1000, 500 without any results.
int ScoreEntry(const BookEntry& entry) {
    const unsigned games = entry.Good() + entry.Bad();
    return games == 0 ? 500 : static_cast<int>(entry.Good() * 1000 / games);
}

// Drops the entries that must not be played; the others keep their order.
void DropUnplayable(BookList* list) {
    int count = 0;
    for (const BookEntry& entry : *list) {
        if (!entry.IsRemoved() && MoveOfEntry(entry) != NO_MOVE) list->Entries[count++] = entry;
    }
    list->Count = count;
}

// An entry that has scored at least the share of the best that VarietyOfPlay leaves.
const BookEntry& ChooseByResults(const BookList& list) {
    int best = 0, count = 0;
    for (const BookEntry& entry : list) best = std::max(best, ScoreEntry(entry));
    const int threshold = (100 - VarietyOfPlay) * best / 100;
    const auto isCandidate = [=](const BookEntry& entry) { return ScoreEntry(entry) >= threshold; };
    for (const BookEntry& entry : list) count += isCandidate(entry);
    int number = std::rand() % count;
    const BookEntry* chosen = list.begin();
    while (!isCandidate(*chosen) || number-- > 0) ++chosen;
    return *chosen;
}

// The entry with the fewest games; among equals the one with the best score, and of those the first.
const BookEntry& ChooseLeastPlayed(const BookList& list) {
    const BookEntry* chosen = nullptr;
    int fewest = 0, best = 0;
    for (const BookEntry& entry : list) {
        const int games = static_cast<int>(entry.Good() + entry.Bad()), score = ScoreEntry(entry);
        if (chosen != nullptr && (games > fewest || (games == fewest && score <= best))) continue;
        chosen = &entry;
        fewest = games;
        best = score;
    }
    return *chosen;
}

const BookEntry& ChooseEntry(const BookList& list) {
    if (IsBookVersion0) return list.Entries[std::rand() % list.Count];
    if (BookLearningMode != 0) return ChooseLeastPlayed(list);
    if (UseBookWeights) return ChooseByResults(list);
    // The draw is made and deliberately not used: without weights the first move is the book's choice.
    (void)std::rand();
    return list.Entries[0];
}

void PrintMove(const BookEntry& entry) {
    Print("%c%c%c%c ", 'a' + FileOf(entry.From), '1' + RankOf(entry.From), 'a' + FileOf(entry.To),
          '1' + RankOf(entry.To));
}

void PrintRecord(const BookEntry& entry) {
    const unsigned good = entry.Good(), games = entry.Good() + entry.Bad();
    if (IsBookVersion0) {
        Print("%u\n", entry.Statistic);
    } else if (games == 0) {
        Print("?\n");
    } else if (entry.IsRemoved()) {
        Print("-\n");
    } else {
        // A win adds 2 and a draw 1 to each side.
        Print("%u%% (not less than %u game(s))\n", good * 100 / games, games / 2);
    }
}

}  // namespace

Move ChooseBookMove() {
    BookList list;
    if (!ReadBookList(&list)) return NO_MOVE;
    DropUnplayable(&list);
    return list.Count > 0 ? MoveOfEntry(ChooseEntry(list)) : NO_MOVE;
}

void ListBookMoves() {
    const LearnedKey key = CurrentLearnedKey();
    Print("Current nhash1 = %d, nhash2 = %d\n", static_cast<int>(key.Key1), static_cast<int>(key.Key2));
    BookList list;
    if (!BookLoaded) {
        Print("No book loaded...\n");
    } else if (!ReadBookList(&list)) {
        Print("No moves from current pos in book\n");
    } else {
        Print("%d moves from current pos in book:\n", list.Count);
        for (const BookEntry& entry : list) {
            PrintMove(entry);
            PrintRecord(entry);
        }
    }
    FlushOutput();
}
