// What version 2 of the xboard protocol adds.

#include <algorithm>
#include <cstring>

#include "core/board.h"
#include "core/fen.h"
#include "core/legal.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "frontend/commands.h"
#include "frontend/hashtables.h"
#include "frontend/settings.h"
#include "frontend/tokens.h"
#include "platform/output.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/root.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

// The rest of the line from a token on, inner blanks included; empty without it.
const char* RestFrom(int token) {
    return token < TokenCount ? InputLine + TokenOffset[token] : "";
}

// Whether a draw is as much as the engine can hope for, by the score of its last move: it stands worse, or,
// after a while, nobody has much left to win with.
bool WelcomesDraw() {
    constexpr int WORSE = -30;  // centipawns
    constexpr int SEARCHES = 10;
    return LastScore <= WORSE || (LastScore <= 0 && !HasManyPieces() && GameSearches >= SEARCHES);
}

}  // namespace

void RunProtover() {
    ProtocolVersion = std::max(1, TokenNumber(1));
    if (ProtocolVersion < 2) return;
    Print(
        "feature myname=\"Kestrovan 1.50\" setboard=1 ping=1 colors=0 analyze=1 sigint=0 sigterm=0 "
        "usermove=1 debug=1 memory=1 egt=\"nalimov\" done=1\n");
}

void RunSetBoard() {
    const Board oldBoard = board;
    const HistoryRecord oldRecord = History[0];
    const int oldLength = HistoryLength, oldForgotten = HistoryForgotten;
    LoadCommonFEN(RestFrom(1));
    if (FindPositionFault() == nullptr) return;
    board = oldBoard;
    History[0] = oldRecord;
    HistoryLength = oldLength;
    HistoryForgotten = oldForgotten;
    Print("tellusererror Illegal position\n");
}

void RunPing() {
    Print("pong %s\n", RestFrom(1));
}

void RunUserMove() {
    const char* text = FindMoveText(InputLine);
    if (text != nullptr) {
        EnterMove(text);
    } else {
        Print("Illegal move: %s\n", RestFrom(1));
    }
}

void RunMemory() {
    if (TokenCount < 2) return;
    // Said before every game; a table of the right size stays.
    const int megabytes = std::clamp(TokenNumber(1), 0, LARGEST_TABLE);
    if (TranspositionEntries(megabytes) != HashEntries) ResizeTransposition(megabytes);
}

void RunTablebasePath() {
    if (TokenCount >= 3 && std::strcmp(Tokens[1], "nalimov") == 0) ChangeTablebasePath(RestFrom(2));
}

void RunHint() {
    if (Pondering) {
        // It stands on the board already.
        Print("Hint: %s\n", MoveToText(PredictedMove));
    } else if (!IsInterruptible() && PonderMove != NO_MOVE && IsLegalMove(PonderMove)) {
        Print("Hint: %s\n", MoveToText(PonderMove));
    }
}

void RunDrawOffer() {
    if (WelcomesDraw()) Print("offer draw\n");
}
