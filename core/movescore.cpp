#include "core/movescore.h"

#include <algorithm>

#include "core/board.h"
#include "core/exchange.h"

int32_t HistoryCounters[HISTORY_TABLES][HISTORY_SLOTS];
uint16_t TriedCount[STAT_SLOTS];
uint16_t GoodCount[STAT_SLOTS];
uint16_t StatStamp[STAT_SLOTS];
uint16_t SearchNumber = 0;
Move CheckReply[CHECK_REPLIES];

namespace {

// By success rate in sixteenths. The last entry is reached only when every trial was good; its small value is
// deliberate.
constexpr int RateBonus[17] = {-128000, -64000, -32000, 0,     10000, 20000, 30000, 40000, 50000,
                               50000,   50000,  50000,  50000, 50000, 50000, 50000, 50};

constexpr int EN_PASSANT_SCORE = 100901;
constexpr int GOOD_REPLY_BONUS = 0x20000000;
constexpr int CHECK_REPLY_BONUS = 10000;
constexpr int UNSAFE_REPLY_SCORE = -100000;
constexpr unsigned FEWEST_TRIALS = 9;

// Success of a capture in 256ths, 0 with too few trials.
unsigned MeasureSuccess(Move move) {
    const int index = FreshStatIndex(move, board.SideToMove);
    if (TriedCount[index] < FEWEST_TRIALS) return 0;
    return GoodCount[index] * 256u / TriedCount[index];
}

}  // namespace

int FreshStatIndex(Move move, int side) {
    const int index = StatIndex(move, side);
    if (StatStamp[index] != SearchNumber) {
        StatStamp[index] = SearchNumber;
        TriedCount[index] = GoodCount[index] = 0;
    }
    return index;
}

int CaptureScore(Move move) {
    const unsigned captured = MoveCaptured(move), promotion = MovePromotion(move);
    if (captured == EMPTY && promotion == EMPTY) return EN_PASSANT_SCORE;
    const int attacker = OrderValue[MovePiece(move)];
    if (IsSafeMove(move)) {
        const int base = promotion == EMPTY ? 50000 : 54000;
        return (OrderValue[captured] * 5 + base) * 2 - attacker;
    }
    const bool isUnderPromotion = promotion != EMPTY && promotion != QUEEN;
    const unsigned rate = isUnderPromotion ? 0 : MeasureSuccess(move);
    return OrderValue[captured] * 10 - attacker + RateBonus[rate >> 4];
}

int ScoreEvasion(Move move) {
    if (!TakesNothing(move)) {
        const int score = CaptureScore(move);
        return score > 0 ? score + GOOD_REPLY_BONUS : score;
    }
    const int side = board.SideToMove;
    const bool isSafe = MovePiece(move) == KING || IsSafeMove(move);
    int score = isSafe ? HistoryCounter(move, 0, side) : UNSAFE_REPLY_SCORE - OrderValue[MovePiece(move)];
    const Move previous = LastMove();
    if (previous != NO_MOVE) {
        const int king = static_cast<int>(board.KingSquare[side]);
        if (CheckReply[CheckReplyIndex(previous, king, side)] == move) score += CHECK_REPLY_BONUS;
    }
    return score;
}

void ClearHistoryCounters() {
    std::fill_n(&HistoryCounters[0][0], HISTORY_TABLES * HISTORY_SLOTS, 0);
}

void ClearCheckReplies() {
    std::fill_n(CheckReply, CHECK_REPLIES, NO_MOVE);
}

void ClearRecaptureStatistics() {
    std::fill_n(TriedCount, STAT_SLOTS, uint16_t{0});
    std::fill_n(GoodCount, STAT_SLOTS, uint16_t{0});
    std::fill_n(StatStamp, STAT_SLOTS, uint16_t{0});
}
