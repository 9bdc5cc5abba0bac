#include "search/rootlist.h"

#include <algorithm>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetest.h"
#include "platform/output.h"
#include "search/bookanswer.h"
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
int RootScores[POSITION_MOVES];
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

// Interfaces of protocol version 2 take an announcement for a claim, which has to hold by the rules. Others
// are told as soon as the search counts the game as drawn.
bool AreClaimsJudged() {
    return ProtocolVersion >= 2;
}

// Whether results are announced: a predicted move is not on the real board, and nobody plays what is
// analysed.
bool MayAnnounce() {
    return !UciMode && !Pondering && !(Analyzing && AreClaimsJudged());
}

void AnnounceDraw(const char* result) {
    if (IsGameSearch()) LearnGameEnd();
    Announce(result);
}

bool MayClaimRepetition() {
    return IsRepetition() && (!AreClaimsJudged() || CountOccurrences() >= 3);
}

// A mate with the hundredth ply comes before the draw.
bool MayClaimFiftyMoves() {
    if (GamePly() == 0 || board.Fifty < 100) return false;
    return !AreClaimsJudged() || !IsKingAttacked(board.SideToMove) || HasLegalReply();
}

void AnnounceEnd(bool isInCheck) {
    if (IsGameSearch()) LearnGameEnd();
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
        const auto isQuietStage = [=](Move move) { return !isInCheck && TakesNothing(move); };
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

// Moves element `from` of an array to place `to`.
template <typename T>
void ShiftElement(T* array, int from, int to) {
    if (to <= from) {
        std::rotate(array + to, array + from, array + from + 1);
    } else {
        std::rotate(array + from, array + from + 1, array + to + 1);
    }
}

}  // namespace

void AnnounceDraws() {
    if (!MayAnnounce()) return;
    if (IsMateImpossible()) AnnounceDraw("1/2-1/2 {Draw by insufficient material}");
    if (MayClaimRepetition()) AnnounceDraw("1/2-1/2 {Draw by repetition}");
    if (MayClaimFiftyMoves()) AnnounceDraw("1/2-1/2 {Draw by the 50-moves rule}");
}

Move RootMove(int i) {
    return i < RootMoveCount ? MoveList[i].Move : NO_MOVE;
}

int FindRootMove(Move move) {
    const auto isMove = [=](const ScoredMove& entry) { return entry.Move == move; };
    const auto place = std::find_if(MoveList, MoveList + RootMoveCount, isMove);
    return place == MoveList + RootMoveCount ? -1 : static_cast<int>(place - MoveList);
}

void ShiftRootMove(int from, int to) {
    ShiftElement(MoveList, from, to);
    ShiftElement(RootNodes, from, to);
    ShiftElement(RootGivesCheck, from, to);
    ShiftElement(RootScores, from, to);
}

void MoveToFront(int i) {
    ShiftRootMove(i, 0);
    PrintReport(0, BOUND_LOWER);
}

void SortRootMoves(int first) {
    for (int i = first + 1; i < RootMoveCount; ++i) {
        int place = i;
        while (place > first && RootNodes[place - 1] < RootNodes[i]) --place;
        ShiftRootMove(i, place);
    }
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
        // The root stores its result as if it stood a ply deeper, deliberately; reading it in the same way
        // keeps the distance of a mate.
        if (HashBound(*entry) == BOUND_EXACT) score = HashScoreAt(*entry, ROOT_STORE_PLY);
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
    std::fill_n(RootScores, RootMoveCount, score);
    const int hashPlace = FindRootMove(hashMove);
    if (hashPlace >= 0) {
        ShiftRootMove(hashPlace, 0);
        IterationDepth = 0;
        Nodes = 0;
        PrintReport(0, BOUND_NONE);
    }
    return 0;
}
