#include <climits>
#include <cstring>

#include "core/board.h"
#include "core/editboard.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movescore.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "frontend/commands.h"
#include "frontend/newgame.h"
#include "frontend/think.h"
#include "frontend/tokens.h"
#include "platform/input.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/ordering.h"
#include "search/polling.h"
#include "search/root.h"
#include "search/timecontrol.h"

namespace {

void StartThinking() {
    PonderSearch = 0;
    SearchMovesCount = 0;
    Think();
}

}  // namespace

void RunMove() {
    const Move move = TextToMove(InputLine);
    if (HasPhantomMen() || !IsLegalMove(move)) {
        Print("Illegal move: %s\n", InputLine);
        FlushOutput();
        return;
    }
    PlayMove(move);
    if (!ForceMode) StartThinking();
}

void RunNew() {
    NewGame();
}

void RunReset() {
    ResetGameMemory();
}

void RunLevel() {
    constexpr int MINUTE = 6000, SECOND = 100;  // centiseconds
    const bool hasSeconds = TokenCount >= 5;
    if (TokenCount >= 2) MovesToGo = TokenNumber(1);
    if (TokenCount >= 3) BaseTime = MultiplyBounded(TokenNumber(2), MINUTE);
    if (hasSeconds) {
        const int seconds = MultiplyBounded(TokenNumber(3), SECOND);
        BaseTime = seconds > INT_MAX - BaseTime ? INT_MAX : BaseTime + seconds;
    }
    if (TokenCount >= 4) {
        OwnIncrement = OpponentIncrement = MultiplyBounded(TokenNumber(hasSeconds ? 4 : 3), SECOND);
    }
}

void RunLoadFen() {
    constexpr size_t PREFIX = 8;  // "loadfen "
    if (std::strlen(InputLine) > PREFIX) LoadFEN(InputLine + PREFIX);
}

void RunEdit() {
    constexpr int AGED_SEARCHES = 3;
    EditBoard();
    ClearOrdering();
    SearchNumber += AGED_SEARCHES;
}

void RunGo() {
    ForceMode = 0;
    if (TokenCount > 1) {
        PonderSearch = 0;
        SearchMovesCount = 0;
        ReadGoParameters();
        Think();
        return;
    }
    // An interface that names no clock means none, not the one it named before.
    if (UciMode) EngineTime = NO_CLOCK;
    StartThinking();
}

void RunUndo() {
    TakeBackMove();
}

void RunRemove() {
    if (TakeBackMove()) TakeBackMove();
}

void RunDemo() {
    const int ponderingOn = PonderingOn;
    PonderingOn = 0;
    NewGame();
    for (int plies = -1; GamePly() != plies;) {
        plies = GamePly();
        StartThinking();
        // Any line that a search does not answer ends the demonstration, as does the end of input.
        PollDuringSearch();
        if (IsGameRequested() || HasKeptLine() || HasInputEnded()) break;
    }
    PonderingOn = ponderingOn;
}

void RunXboard() {
    PonderingOn = PonderingAllowed;
    NodeLimit = 0;
    MaxDepth = UNLIMITED_DEPTH;
    MovesToGo = 0;
    MoveTime = 0;
    MateSearch = 0;
    UciMode = 0;
}
