#include "search/rootlist.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "platform/output.h"
#include "search/draws.h"
#include "search/modes.h"
#include "search/plyinfo.h"
#include "search/reports.h"
#include "search/root.h"
#include "search/search.h"
#include "search/transposition.h"

int RootMoveCount = 0;
int64_t RootNodes[POSITION_MOVES];
int RootGivesCheck[POSITION_MOVES];
Move SearchMoves[SEARCH_MOVES_SIZE];
int SearchMovesCount = 0;
int LastScore = 0;
int LastScoreSide = WHITE;

namespace {

constexpr int FIRST_PRIORITY = 512;

void Announce(const char* result) {
    Print("%s\n", result);
    FlushOutput();
}

bool HasTooLittle(int side) {
    return board.Material[ChangeSide(side)] == 0 && board.Material[side] <= 300 &&
           board.PieceNumber[PAWN][side] == 0;
}

// Whether results are announced: a predicted move is not on the real board.
bool MayAnnounce() {
    return !UciMode && !Pondering;
}

void AnnounceEnd(bool isInCheck) {
    if (!MayAnnounce()) return;
    if (!isInCheck) {
        Announce("1/2-1/2 {Stalemate}");
    } else {
        Announce(board.SideToMove == BLACK ? "1-0 {White mates}" : "0-1 {Black mates}");
    }
}

bool IsWanted(Move move) {
    return SearchMovesCount == 0 ||
           std::find(SearchMoves, SearchMoves + SearchMovesCount, move) != SearchMoves + SearchMovesCount;
}

// Puts the legal and wanted moves of the side to move into the list.
void FillList(bool isInCheck) {
    MoveListTop = 0;
    GenerateMoves();
    const auto end = std::remove_if(MoveList, MoveList + MoveListTop, [](const ScoredMove& entry) {
        return !IsWanted(entry.Move) || !LeavesKingSafe(entry.Move);
    });
    // Replies to a check are one stage; otherwise captures and promotions come before quiet moves.
    std::stable_sort(MoveList, end, [=](const ScoredMove& a, const ScoredMove& b) {
        const auto isQuietStage = [=](Move move) {
            return !isInCheck && IsQuiet(move) && !IsEnPassant(move);
        };
        if (isQuietStage(a.Move) != isQuietStage(b.Move)) return isQuietStage(b.Move);
        return a.Score > b.Score;
    });
    MoveListTop = RootMoveCount = static_cast<int>(end - MoveList);
}

void DescribeMoves() {
    for (int i = 0; i < RootMoveCount; ++i) {
        MoveList[i].Score = FIRST_PRIORITY - i;
        RootNodes[i] = 0;
        MakeMove(MoveList[i].Move, 1);
        RootGivesCheck[i] = IsKingAttacked(board.SideToMove);
        UnmakeMove();
    }
}

// Brings the table's move to the front; false when it is not in the list.
bool PutHashMoveFirst(Move move) {
    for (int i = 0; i < RootMoveCount; ++i) {
        if (MoveList[i].Move != move) continue;
        MoveToFront(i);
        return true;
    }
    return false;
}

}  // namespace

void AnnounceDraws() {
    if (!MayAnnounce()) return;
    if (HasTooLittle(WHITE) || HasTooLittle(BLACK)) Announce("1/2-1/2 {Draw by insufficient material}");
    if (IsRepetition()) Announce("1/2-1/2 {Draw by repetition}");
    if (GamePly() > 0 && board.Fifty >= 100) Announce("1/2-1/2 {Draw by the 50-moves rule}");
}

Move RootMove(int i) {
    return i < RootMoveCount ? MoveList[i].Move : NO_MOVE;
}

void MoveToFront(int i) {
    std::rotate(MoveList, MoveList + i, MoveList + i + 1);
    std::rotate(RootNodes, RootNodes + i, RootNodes + i + 1);
    std::rotate(RootGivesCheck, RootGivesCheck + i, RootGivesCheck + i + 1);
}

int LastScoreToMove() {
    return LastScoreSide == board.SideToMove ? LastScore : -LastScore;
}

int PrepareRoot() {
    AnnounceDraws();
    Move hashMove = NO_MOVE;
    int score = LastScoreToMove();
    if (const HashEntry* entry = HashProbe()) {
        hashMove = HashMove(*entry);
        if (HashBound(*entry) == BOUND_EXACT) score = HashScoreAt(*entry, 0);
    }
    const bool isInCheck = IsKingAttacked(board.SideToMove);
    PlyInfo[0].InCheck = isInCheck;
    FillList(isInCheck);
    if (RootMoveCount == 0 && SearchMovesCount > 0) {
        // A restriction to moves that can't be played restricts nothing.
        SearchMovesCount = 0;
        FillList(isInCheck);
    }
    DescribeMoves();
    if (RootMoveCount == 0) {
        AnnounceEnd(isInCheck);
        return 1;
    }
    RootScore = score;
    if (PutHashMoveFirst(hashMove)) {
        IterationDepth = 0;
        Nodes = 0;
        PrintReport(0, BOUND_NONE);
    }
    return 0;
}
