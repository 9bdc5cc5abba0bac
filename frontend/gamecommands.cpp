#include <cstring>

#include "core/board.h"
#include "core/editboard.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movescore.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "core/textnumber.h"
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

// Thinks about all moves, within the limits in force.
void ThinkFreely() {
    SearchMovesCount = 0;
    Think();
}

}  // namespace

void EnterMove(const char* text) {
    const Move move = TextToMove(text);
    if (HasPhantomMen() || !IsLegalMove(move)) {
        Print("Illegal move: %s\n", text);
        FlushOutput();
        return;
    }
    PlayMove(move);
    if (!ForceMode) ThinkFreely();
}

void RunMove() {
    EnterMove(InputLine);
}

void RunLevel() {
    constexpr int64_t MINUTE = 6000, SECOND = 100;  // centiseconds
    const bool hasSeconds = TokenCount >= 5;
    if (TokenCount >= 2) MovesToGo = TokenNumber(1);
    if (TokenCount >= 3) {
        const int64_t seconds = hasSeconds ? TokenNumber(3) : 0;
        BaseTime = BoundToInt(TokenNumber(2) * MINUTE + seconds * SECOND);
        // Until somebody tells the time.
        if (EngineTime == NO_CLOCK && BaseTime > 0) EngineTime = BaseTime;
    }
    if (TokenCount >= 4) {
        OwnIncrement = OpponentIncrement = BoundToInt(TokenNumber(hasSeconds ? 4 : 3) * SECOND);
    }
}

void RunLoadFen() {
    constexpr size_t PREFIX = 8;  // "loadfen "
    if (std::strlen(InputLine) <= PREFIX) return;
    const char* text = InputLine + PREFIX;
    if (text[std::strspn(text, " ")] != '\0') LoadFEN(text);
}

void RunEdit() {
    constexpr int AGED_SEARCHES = 3;
    EditBoard();
    ClearOrdering();
    SearchNumber += AGED_SEARCHES;
}

void RunGo() {
    ForceMode = 0;
    SearchMovesCount = 0;
    // A blank at the end of the line is no parameter.
    if (TokenCount > 2 || (TokenCount == 2 && Tokens[1][0] != '\0')) {
        ReadGoParameters();
    } else if (UciMode) {
        // An interface that names no clock means none, not the one it named before.
        EngineTime = NO_CLOCK;
    }
    Think();
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
        ThinkFreely();
        // Any line that a search does not answer ends the demonstration, as does the end of input.
        PollDuringSearch();
        if (HasKeptLine() || HasInputEnded()) break;
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
    ProtocolVersion = 1;
}
