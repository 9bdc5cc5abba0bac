#pragma once

#include "core/types.h"

// The one move list, a stack: generators append at MoveListTop, each search node cuts it back to where its
// own moves began. Nothing is ever removed from the middle.

struct ScoredMove {
    ::Move Move;
    int32_t Score;  // ordering score, higher first; unit of its own
};

// More than the moves of one position, legal or not: at most 63 men with at most 27 targets each, and eight
// times four promotions.
constexpr int POSITION_MOVES = 1792;

// Entries: a deepest line of 200 positions with 218 moves each, the most that a legal one has, and one more
// position of any kind.
constexpr int MOVE_LIST_SIZE = 200 * 218 + POSITION_MOVES;

extern ScoredMove MoveList[MOVE_LIST_SIZE];
extern int MoveListTop;  // next free entry, 0..MOVE_LIST_SIZE

inline void AppendMove(Move move, int score) {
    MoveList[MoveListTop++] = {move, score};
}

// Whether the moves of one more position, whatever it is, fit.
inline bool HasMoveListRoom() {
    return MoveListTop <= MOVE_LIST_SIZE - POSITION_MOVES;
}

// Swaps the entry with the highest score among [first, end) to `first`; the earliest of equals wins.
void SelectBestMove(int first, int end);
