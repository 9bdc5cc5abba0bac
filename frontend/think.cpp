#include "frontend/think.h"

#include "book/booksettings.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "eval/evaluate.h"
#include "frontend/learning.h"
#include "frontend/newgame.h"
#include "frontend/resign.h"
#include "platform/input.h"
#include "platform/output.h"
#include "search/bookanswer.h"
#include "search/modes.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/search.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

Move LastBestMove = NO_MOVE;

namespace {

// Searches the position on the board within the limits, as deep as `maxDepth`; false when the game is over.
bool SearchPosition(int maxDepth) {
    ClearRequests();
    StartSearchClock();
    if (IsTimedSearch()) {
        AllocateTime(GamePly());
    } else {
        SetNoTimeLimit();
    }
    return IterativeDeepening(maxDepth, 1) == 0;
}

void PrintFinalLine() {
    if (UciMode) {
        PrintUciInfo(1, BOUND_NONE, 1);
        if (DebugMode && IsTimedSearch()) {
            Print("info string target %d maximum %d used %d centiseconds\n", TargetTime, MaxTime,
                  LimitElapsed());
        }
    } else {
        PrintThinkingLine();
    }
}

// Whether input has taken away the engine's right to move. Not in UCI, whose every search is answered.
bool IsMoveUnwanted() {
    return !UciMode && MoveUnwanted;
}

void AnnounceMove(Move move) {
    if (UciMode) {
        AnnounceBestMove(move);
        return;
    }
    // The move follows the resignation on purpose.
    if (ShouldResign()) Print("resign\n");
    Print("move %s\n", MoveToText(move));
    FlushOutput();
}

// Makes the best move and announces it.
void PlayBestMove() {
    const Move move = RootMove(0);
    LastScore = RootScore;
    LastScoreSide = board.SideToMove;
    if (!IsBookMove) PrintFinalLine();
    if (IsMoveUnwanted()) return;
    const bool isGame = IsGameSearch();
    if (isGame) LearnFromScore();
    PlayMove(move);
    if (isGame) PushResignHistory();
    AnnounceMove(move);
    if (isGame && Learning) UpdatePositionLearning();
}

// A short silent search for the reply to expect; 0 when it was cut short or the game is over.
Move SearchForPrediction() {
    QuietPreSearch = 1;
    const bool isOver = !SearchPosition(UNLIMITED_DEPTH);
    const bool wasCutShort = QuietPreSearch || HasKeptLine();
    QuietPreSearch = 0;
    return isOver || wasCutShort ? NO_MOVE : RootMove(0);
}

// The reply that the opponent is expected to make on the board, 0 for none.
Move PredictReply() {
    if (const HashEntry* entry = HashProbe()) {
        const Move move = HashMove(*entry);
        if (move != NO_MOVE && IsLegalMove(move)) return move;
    }
    return SearchForPrediction();
}

// Puts the predicted reply on the board, to think on it; false when there is nothing to ponder.
bool StartPondering() {
    // A UCI interface decides itself what is pondered on.
    if (UciMode || !PonderingOn || HasKeptLine() || HasInputEnded()) return false;
    const Move move = PredictReply();
    if (move == NO_MOVE || IsMoveUnwanted()) return false;
    Print("Hint: %.4s\n", MoveToText(move));
    FlushOutput();
    PredictedMove = move;
    PlayMove(move);
    Pondering = 1;
    return true;
}

// One search with its move; true when another one is to follow.
bool ThinkOnce() {
    EngineSide = board.SideToMove;
    const bool wasPondering = Pondering != 0;
    if (!SearchPosition(MaxDepth)) {
        // A predicted reply that ended the game is not on the real board.
        if (Pondering) TakeBackMove();
        return false;
    }
    if (Pondering) {
        // The prediction has failed or something else was asked for; a move that was entered has been kept.
        TakeBackMove();
        return false;
    }
    // What would have been announced before the search, had the move been played by then.
    if (wasPondering) AnnounceDraws();
    PlayBestMove();
    return !IsMoveUnwanted() && StartPondering();
}

}  // namespace

void AnnounceBestMove(Move move) {
    LastBestMove = move;
    Print("bestmove %s", MoveToText(move));
    if (PonderMove != NO_MOVE && IsLegalMove(PonderMove)) Print(" ponder %s", MoveToText(PonderMove));
    Print("\n");
    FlushOutput();
}

void Think() {
    PonderMove = NO_MOVE;
    QuietPreSearch = 0;
    if (CheckPosition()) {
        while (ThinkOnce()) {
        }
    }
    Pondering = PonderSearch = InfiniteSearch = 0;
}
