#include "search/reports.h"

#include <string>
#include <vector>

#include "core/board.h"
#include "core/keys.h"
#include "core/legal.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/polling.h"
#include "search/root.h"
#include "search/search.h"
#include "search/timecontrol.h"
#include "search/transposition.h"

namespace {

int64_t LastReportNodes = 0;  // Nodes at the last UCI line
int NodeRateCountdown = 0;    // looks at the clock until the next node-rate line

long long NodesPerSecond() {
    const int elapsed = ElapsedTime();
    return elapsed >= 1 ? static_cast<long long>(Nodes) * 100 / elapsed : 0;
}

void ResetNodeRateCountdown() {
    NodeRateCountdown = 100000 / (PollInterval > 0 ? PollInterval : 1);
}

std::string ScoreText(int score) {
    if (score > MATE_BOUND) return "mate " + std::to_string((MATE + 1 - score) >> 1) + " ";
    if (score < -MATE_BOUND) return "mate -" + std::to_string((score + MATE + 1) / 2) + " ";
    return "cp " + std::to_string(score) + " ";
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

}  // namespace

void PrintThinkingLine() {
    Print("%d %d %d %lld", IterationDepth + 1, ShownScore(RootScore), ElapsedTime(),
          static_cast<long long>(Nodes));
    PrintPv();
    Print("\n");
    FlushOutput();
}

void PrintThinking(int force) {
    if (!PostMode || QuietPreSearch) return;
    if (force || Nodes == 0 || Nodes > 100000) PrintThinkingLine();
}

void PrintUciInfo(int force, int boundType, int withPv) {
    if (!force && Nodes != 0 && Nodes - LastReportNodes <= 30000) return;
    LastReportNodes = Nodes;
    Print("info depth %d seldepth %d score %s", IterationDepth + 1, MaxPlyReached,
          ScoreText(UciScore()).c_str());
    if (boundType == BOUND_UPPER) Print("upperbound ");
    if (boundType == BOUND_LOWER) Print("lowerbound ");
    Print("nodes %lld time %d hashfull %d nps %lld tbhits %d", static_cast<long long>(Nodes), ElapsedTime(),
          HashFull(), NodesPerSecond(), TablebaseHits);
    if (withPv) {
        Print(" pv");
        PrintPv();
    } else {
        Print(" currmove %s currmovenumber %d", MoveToText(RootMove(CurrentRootMove)), CurrentRootMove + 1);
    }
    Print("\n");
    FlushOutput();
    ResetNodeRateCountdown();
}

void PrintReport(int force, int boundType) {
    if (UciMode) {
        PrintUciInfo(force, boundType, 1);
    } else {
        PrintThinking(force);
    }
}

void PrintNodeRate() {
    ResetNodeRateCountdown();
    if (Nodes != 0 && Nodes <= 200000) return;
    Print("info nps %lld nodes %lld tbhits %d hashfull %d\n", NodesPerSecond(), static_cast<long long>(Nodes),
          TablebaseHits, HashFull());
    FlushOutput();
}

void CountDownNodeRate() {
    if (--NodeRateCountdown < 0) PrintNodeRate();
}

void PrintPv() {
    constexpr int FURTHER_MOVES = 20;
    std::vector<Move> line;
    PonderMove = NO_MOVE;
    for (Move move = RootMove(0); move != NO_MOVE; move = VerifiedHashMove()) {
        Print(" %s", MoveToText(move));
        if (line.size() == 1) PonderMove = move;
        if (line.size() == 2) ExpectMove(move);
        MakeMove(move, 1);
        line.push_back(move);
        if (line.size() > FURTHER_MOVES) break;
    }
    for (size_t i = 0; i < line.size(); ++i) UnmakeMove();
}

void ResetReports() {
    LastReportNodes = 0;
    ResetNodeRateCountdown();
}
