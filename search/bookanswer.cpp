#include "search/bookanswer.h"

#include "book/bookchoice.h"
#include "book/bookfile.h"
#include "book/booklearning.h"
#include "book/booksettings.h"
#include "core/rewind.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/root.h"
#include "search/timecontrol.h"

int IsBookMove = 0;

namespace {

bool MayAskBook(int useBook) {
    return useBook && BookLoaded && OwnBook && MultiPvCount <= 1 && SearchMovesCount == 0 &&
           EngineTime != INFINITE_TIME;
}

}  // namespace

bool AnswerFromBook(int useBook) {
    IsBookMove = 0;
    if (!MayAskBook(useBook)) return false;
    const Move move = ChooseBookMove();
    if (move == NO_MOVE) return false;
    MoveList[0] = {move, 0};
    MoveListTop = RootMoveCount = 1;
    RootScore = 0;
    IterationDepth = 1;
    IsBookMove = 1;
    return true;
}

void LearnGameEnd() {
    if (!IsBookLearningDue()) return;
    const GameRewind game;
    // The engine's own moves are learnt from, and a search for a prediction looks at the opponent's turn.
    if (QuietPreSearch) game.StepBack();
    LearnBookGame(GAME_ENDED);
}
