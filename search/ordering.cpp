#include "search/ordering.h"

#include <algorithm>

#include "core/board.h"
#include "core/movescore.h"
#include "platform/output.h"
#include "search/plyinfo.h"
#include "search/scores.h"
#include "search/timecontrol.h"

CaptureCounts SafeCaptures;

namespace {

constexpr int COUNTER_LIMIT = 32700;
constexpr int HURRY_TIME = 70;  // centiseconds

// By depth in whole plies.
constexpr int DepthWeight[16] = {0, 57, 119, 155, 181, 200, 217, 230, 242, 253, 262, 271, 278, 286, 292, 298};

}  // namespace

void UpdateHistory(int depth, Move move, int selector) {
    const int plies = std::min(depth / PLY_DEPTH, 15);
    if (plies == 0) Print("?");
    const int side = board.SideToMove;
    int32_t& counter = HistoryCounter(move, selector, side);
    counter += (DepthWeight[plies] * (COUNTER_LIMIT - counter)) >> 10;
    PlyRecord& record = PlyInfo[Ply];
    if (record.Killer1[side] != move) {
        record.Killer2[side] = record.Killer1[side];
        record.Killer1[side] = move;
    }
}

void RememberCheckReply(Move move) {
    const Move last = LastMove();
    if (last == NO_MOVE || (MovePiece(move) == PAWN && FileOf(MoveFrom(move)) != FileOf(MoveTo(move))))
        return;
    const int side = board.SideToMove;
    CheckReply[CheckReplyIndex(last, static_cast<int>(board.KingSquare[side]), side)] = move;
}

void UpdateRecapture(Move move, int score, bool isGood) {
    if (score >= SAFE_CAPTURE_SCORE) {
        const unsigned kind = MovePiece(move) * 8 + MoveCaptured(move);
        ++SafeCaptures.Tried[kind];
        ++SafeCaptures.AllTried;
        SafeCaptures.Good[kind] += isGood;
        SafeCaptures.AllGood += isGood;
        return;
    }
    const int slot = FreshStatIndex(move, board.SideToMove);
    ++TriedCount[slot];
    GoodCount[slot] += isGood;
    if (TriedCount[slot] <= 64) return;
    TriedCount[slot] /= 2;
    GoodCount[slot] /= 2;
}

void AgeHistory() {
    if (TargetTime > HURRY_TIME) {
        for (auto& table : HistoryCounters) {
            for (int32_t& counter : table) counter >>= 8;
        }
    } else {
        ClearHistoryCounters();
    }
    for (int ply = 0; ply < PLY_RECORDS; ++ply) {
        const PlyRecord later = ply + 2 < PLY_RECORDS ? PlyInfo[ply + 2] : PlyRecord{};
        std::copy_n(later.Killer1, 2, PlyInfo[ply].Killer1);
        std::copy_n(later.Killer2, 2, PlyInfo[ply].Killer2);
    }
}

void ClearOrdering() {
    ClearHistoryCounters();
    ClearKillers();
}

void ClearKillers() {
    for (PlyRecord& record : PlyInfo) {
        for (const int side : {WHITE, BLACK}) record.Killer1[side] = record.Killer2[side] = NO_MOVE;
    }
}
