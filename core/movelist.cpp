#include "core/movelist.h"

#include <utility>

ScoredMove MoveList[MOVE_LIST_SIZE];
int MoveListTop = 0;

void SelectBestMove(int first, int end) {
    int best = first;
    for (int i = first + 1; i < end; ++i) {
        if (MoveList[i].Score > MoveList[best].Score) best = i;
    }
    std::swap(MoveList[first], MoveList[best]);
}
