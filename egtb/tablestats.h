#pragma once

#include <cstdint>

#include "egtb/tablestore.h"

// What a class holds, counted over the positions of a whole board: every mirror image counts, but not the
// positions that can be captured en passant in.
struct TableStatistics {
    // The longest mates that are given or received by the side to move.
    struct Longest {
        int Moves = 0;
        int64_t Positions = 0;
        int64_t Number = -1;  // in the table, of the first one
    };
    struct SideToMove {
        int64_t Wins = 0, Draws = 0, Losses = 0;
        Longest Win, Loss;

        int64_t Positions() const { return Wins + Draws + Losses; }
    } Of[2];

    // Positions in which nobody wants to be on move, mirror images counted once: White wins with Black to
    // move only, Black with White to move only, or whoever is to move loses.
    int64_t WhiteZugzwangs = 0, BlackZugzwangs = 0, FullZugzwangs = 0;
};

// The class must be loaded.
TableStatistics CountTable(const TableClass& tableClass, const TableStore& store, int threads);

// Compares every entry with what the moves of its position lead to. Returns how many don't agree, and the
// position of the first of them. The class and its successors must be loaded.
int64_t CountFaults(const TableClass& tableClass, const TableStore& store, int threads, TablePosition* first);
