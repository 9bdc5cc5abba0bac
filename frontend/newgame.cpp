#include "frontend/newgame.h"

#include "book/booklearning.h"
#include "core/board.h"
#include "core/makemove.h"
#include "core/movescore.h"
#include "core/positionfault.h"
#include "core/rewind.h"
#include "eval/evaluate.h"
#include "frontend/resign.h"
#include "platform/output.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/ordering.h"
#include "search/root.h"
#include "search/timecontrol.h"

int ForceMode = 0;
int FritzMode = 0;

void LearnAbandonedGame() {
    if (!IsBookLearningDue() || board.SideToMove == LastScoreSide || !IsOfThisGame(0)) return;
    // The engine's last move has been answered by nobody.
    const GameRewind game;
    if (game.StepBack()) LearnBookGame(GAME_ENDED);
}

void LearnPreviousGame() {
    if (LastScore == 0) LearnAbandonedGame();
}

void ResetGameMemory() {
    ClearOrdering();
    ResetRootMemory();
    ResetBookGame();
}

void NewGame() {
    const bool keepsMemory = FritzMode || UciMode;
    if (!keepsMemory) LearnAbandonedGame();
    ResetBoard();
    MaxDepth = UNLIMITED_DEPTH;
    MoveTime = 0;
    MateSearch = 0;
    EngineSide = BLACK;
    ForceMode = 0;
    DrawScore = 0;
    if (keepsMemory) return;
    ResetGameMemory();
    ClearCheckReplies();
}

void PlayMove(Move move) {
    MakeMove(move, 1);
    ReserveHistory(HISTORY_RESERVE);
}

bool CheckPosition() {
    const char* fault = FindPositionFault();
    if (fault == nullptr) return true;
    if (UciMode) {
        Print("info string illegal position: %s\nbestmove 0000\n", fault);
    } else {
        Print("Error (illegal position): %s\n", fault);
    }
    FlushOutput();
    return false;
}

bool CheckMen() {
    if (!HasPhantomMen()) return true;
    Print("Error (illegal position): %s\n", FindPositionFault());
    FlushOutput();
    return false;
}
