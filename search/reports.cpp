#include "search/reports.h"

#include <cstdint>
#include <string>

#include "core/board.h"
#include "core/keys.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "egtb/tablereport.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/multipv.h"
#include "search/polling.h"
#include "search/root.h"
#include "search/search.h"
#include "search/tableranking.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

int64_t LastReportNodes = 0;  // Nodes at the last UCI line
int NodeRateCountdown = 0;    // looks at the clock until the next node-rate line

long long NodesPerSecond(int elapsed) {
    return elapsed >= 1 ? static_cast<long long>(Nodes) * 100 / elapsed : 0;
}

void ResetNodeRateCountdown() {
    NodeRateCountdown = 100000 / (PollInterval > 0 ? PollInterval : 1);
}

// The text of a score, in the form that suits `model`.
std::string ScoreText(int score, int model) {
    if (model > MATE_BOUND) return "mate " + std::to_string((MATE + 1 - score) >> 1) + " ";
    if (model < -MATE_BOUND) return "mate -" + std::to_string((score + MATE + 1) / 2) + " ";
    return "cp " + std::to_string(score) + " ";
}

const char* BoundText(int boundType) {
    return boundType == BOUND_UPPER ? "upperbound " : boundType == BOUND_LOWER ? "lowerbound " : "";
}

// The part that both UCI lines have in common, from the depth on.
void PrintState(int score, int model, int boundType) {
    Print("depth %d seldepth %d score %s%s", IterationDepth + 1, MaxPlyReached,
          ScoreText(score, model).c_str(), BoundText(boundType));
    const int elapsed = ElapsedTime();
    Print("nodes %lld time %d hashfull %d nps %lld tbhits %d", static_cast<long long>(Nodes), elapsed,
          HashFull(), NodesPerSecond(elapsed), TablebaseHits);
}

void PrintCurrentMove() {
    Print(" currmove %s currmovenumber %d", MoveToText(RootMove(CurrentRootMove)), CurrentRootMove + 1);
}

void PrintAllLines(int failingLine, int boundType) {
    const TableReportHold hold;
    for (int i = 0; i < RootMoveCount && i < MultiPvCount; ++i) {
        Print("info multipv %d ", i + 1);
        PrintState(RootScores[i], RootScore, i == failingLine ? boundType : BOUND_NONE);
        PrintCurrentMove();
        Print(" pv");
        PrintPv(i);
        Print("\n");
    }
    FlushOutput();
    ResetNodeRateCountdown();
}

// Scores of mates as the xboard line shows them: a mate in one ply is 32766.
int ShownScore(int score) {
    constexpr int MATE_SHIFT = 67;
    if (score > MATE_BOUND) return score + MATE_SHIFT;
    if (score < -MATE_BOUND) return score - MATE_SHIFT;
    return score;
}

// In a mate search only the mate that is sought is shown.
int UciScore() {
    const bool isOther = MateSearch > 0 && MateSearch != (MATE + 1 - RootScore) / 2;
    return isOther ? 0 : RootScore;
}

// The reply of the table to the position on the board, once it has proved legal; 0 for none.
Move VerifiedHashMove() {
    const HashEntry* entry = HashProbe();
    if (entry == nullptr) return NO_MOVE;
    const Move move = HashMove(*entry);
    return move != NO_MOVE && IsLegalMove(move) ? move : NO_MOVE;
}

// The move that goes on with a line on the board: no search has looked behind what tables know.
Move NextLineMove(bool asksTables) {
    const Move move = asksTables ? FindTableMove() : NO_MOVE;
    return move != NO_MOVE ? move : VerifiedHashMove();
}

}  // namespace

void PrintThinkingLine() {
    const TableReportHold hold;
    Print("%d %d %d %lld", IterationDepth + 1, ShownScore(RootScore), ElapsedTime(),
          static_cast<long long>(Nodes));
    PrintPv(0);
    Print("\n");
    FlushOutput();
}

void PrintThinking(int force) {
    if (!PostMode || QuietPreSearch) return;
    if (force || Nodes == 0 || Nodes > 100000) PrintThinkingLine();
}

void PrintUciInfo(int force, int boundType, int withPv) {
    // Unsigned: a count that the last search has left behind holds nothing back.
    const auto sinceLast = static_cast<uint64_t>(Nodes) - static_cast<uint64_t>(LastReportNodes);
    if (!force && Nodes != 0 && sinceLast <= 30000) return;
    LastReportNodes = Nodes;
    const TableReportHold hold;
    Print("info ");
    PrintState(UciScore(), UciScore(), boundType);
    if (withPv) {
        Print(" pv");
        PrintPv(0);
    } else {
        PrintCurrentMove();
    }
    Print("\n");
    FlushOutput();
    ResetNodeRateCountdown();
}

void PrintMultiPv(int failingLine, int boundType) {
    if (Nodes == 0 || Nodes > 50000) PrintAllLines(failingLine, boundType);
}

void PrintLines() {
    PrintAllLines(0, BOUND_NONE);
}

void PrintReport(int line, int boundType) {
    if (!UciMode) {
        if (line == 0) PrintThinking(0);
    } else if (MultiPvCount > 1) {
        PrintMultiPv(line, boundType);
    } else {
        PrintUciInfo(0, boundType, 1);
    }
}

void PrintNodeRate() {
    ResetNodeRateCountdown();
    if (Nodes != 0 && Nodes <= 200000) return;
    Print("info nps %lld nodes %lld tbhits %d hashfull %d\n", NodesPerSecond(ElapsedTime()),
          static_cast<long long>(Nodes), TablebaseHits, HashFull());
    FlushOutput();
}

void CountDownNodeRate() {
    if (--NodeRateCountdown < 0) PrintNodeRate();
}

void PrintPv(int line) {
    constexpr int FURTHER_MOVES = 20;
    const bool isBest = line == 0;
    // A slow disk must not take time off the clock for lines that are not played.
    const bool asksTables = isBest || !IsTimedSearch();
    if (isBest) PonderMove = NO_MOVE;
    int length = 0;
    for (Move move = RootMove(line); move != NO_MOVE; move = NextLineMove(asksTables)) {
        Print(" %s", MoveToText(move));
        if (isBest && length == 1) PonderMove = move;
        if (isBest && length == 2) ExpectMove(move);
        MakeMove(move, 1);
        if (++length > FURTHER_MOVES) break;
    }
    for (; length > 0; --length) UnmakeMove();
}

void ResetReports() {
    ResetNodeRateCountdown();
}
