#include "frontend/resign.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "core/board.h"
#include "search/root.h"

int ResignValue = 800;
int ResignTimes = 3;

namespace {

struct OwnMove {
    uint64_t Key;  // HashKey after the move
    int Score;     // centipawns from the engine's side
};

OwnMove ResignHistory[10];  // newest first; outlives games, checked against the game record

// The HashKey of the position `plies` ago, 0 plies being the one on the board.
uint64_t KeyBefore(int plies) {
    return plies == 0 ? board.HashKey : History[HistoryLength - plies].HashKey;
}

}  // namespace

void PushResignHistory() {
    const int score = RootMoveCount == 1 ? ResignHistory[0].Score : RootScore;
    std::copy_backward(ResignHistory, std::end(ResignHistory) - 1, std::end(ResignHistory));
    ResignHistory[0] = {board.HashKey, score};
}

bool ShouldResign() {
    int count = 0;
    for (const OwnMove& own : ResignHistory) {
        const int plies = 2 * count;
        if (plies > HistoryLength || KeyBefore(plies) != own.Key || own.Score >= -int64_t{ResignValue})
            return false;
        if (++count >= ResignTimes) return true;
    }
    return false;
}
