#include "frontend/resign.h"

#include <algorithm>
#include <iterator>

#include "core/board.h"
#include "search/bookanswer.h"
#include "search/root.h"

int ResignValue = 800;
int ResignTimes = 3;

OwnMove ResignHistory[OWN_MOVES_KEPT];

bool IsOfThisGame(int i) {
    const int plies = 2 * i;
    if (plies > HistoryLength) return false;
    const uint64_t key = plies == 0 ? board.HashKey : History[HistoryLength - plies].HashKey;
    return key == ResignHistory[i].Key;
}

void PushResignHistory() {
    const bool isForced = RootMoveCount == 1 && !IsBookMove;
    const int score = isForced ? ResignHistory[0].Score : RootScore;
    std::copy_backward(ResignHistory, std::end(ResignHistory) - 1, std::end(ResignHistory));
    ResignHistory[0] = {board.HashKey, score, IsBookMove != 0};
}

bool ShouldResign() {
    int count = 0;
    while (count < OWN_MOVES_KEPT) {
        if (!IsOfThisGame(count) || ResignHistory[count].Score >= -int64_t{ResignValue}) return false;
        if (++count >= ResignTimes) return true;
    }
    return false;
}
