#include "core/board.h"
#include "core/movetext.h"
#include "core/perft.h"
#include "egtb/tablebases.h"
#include "frontend/commands.h"
#include "frontend/newgame.h"
#include "frontend/startup.h"
#include "frontend/tokens.h"
#include "platform/output.h"
#include "platform/platform.h"
#include "search/root.h"
#include "search/timecontrol.h"

void RunMoves() {
    Print("-------------- Legal moves: ----------------\n\n");
    const int top = MoveListTop;
    if (CheckMen()) {
        StartSearchClock();
        PrepareRoot();
        for (int i = 0; i < RootMoveCount; ++i) {
            Print("%s (%d); ", MoveToPieceText(MoveList[i].Move), MoveList[i].Score);
        }
    }
    Print("\n");
    FlushOutput();
    MoveListTop = top;
}

void RunPerft() {
    if (TokenCount < 2 || !CheckMen()) return;
    const int depth = TokenNumber(1);
    if (depth > MAX_PERFT_DEPTH) {
        Print("Error (perft depth): at most %d\n", MAX_PERFT_DEPTH);
        return;
    }
    MoveListTop = 0;
    // Time from a tick on.
    const int64_t before = ClockMs();
    int64_t start = before;
    while (start == before) start = ClockMs();
    const int count = Perft(depth);
    const float seconds = static_cast<float>(ClockMs() - start) * 0.001f;
    Print("total moves = %d time = %.2f\n", count, static_cast<double>(seconds));
}

void RunShowFlags() {
    Print("castling flags = %d\n", static_cast<int>(board.CastlingFlags));
}

void RunTablebaseStatus() {
    Print("UseEGTB = %s\ntb_path = %s\n", UseEGTB ? "TRUE" : "FALSE", tb_path);
    PrintTablebaseCount();
}
