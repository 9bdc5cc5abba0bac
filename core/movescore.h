#pragma once

#include "core/types.h"

// Ordering scores of moves, and the counters they are read from. The counters stand here because the
// generators read them; the search writes them.

// Value by piece code for ordering, in centipawns.
constexpr int OrderValue[PIECE_CODES] = {0, 950, 300, 100, 0, 500, 300, 900};

// History: counters 0..32700 of how often a quiet move cut off, in eight tables. King and knight share a
// table on purpose, as do pawn and bishop.
constexpr int HISTORY_TABLES = 8;
constexpr int HISTORY_SLOTS = 8192;
constexpr int HistoryTableOfPiece[PIECE_CODES] = {0, 0, 0, 1, 0, 2, 1, 3};
extern int32_t HistoryCounters[HISTORY_TABLES][HISTORY_SLOTS];

// The counter of a quiet move: `selector` 0 or 1 chooses the set, `side` is the mover.
inline int32_t& HistoryCounter(Move move, int selector, int side) {
    return HistoryCounters[HistoryTableOfPiece[MovePiece(move)] + 4 * selector][(move & 0xFFF) * 2 + side];
}

// Recapture statistics: how often a capture that looked losing was tried and raised alpha. A slot whose stamp
// is not the current search counts as zero. The side is ORed into bit 1 of the from-square, so that two
// from-squares share a slot, deliberately.
constexpr int STAT_SLOTS = 262144;
extern uint16_t TriedCount[STAT_SLOTS];
extern uint16_t GoodCount[STAT_SLOTS];
extern uint16_t StatStamp[STAT_SLOTS];
extern uint16_t SearchNumber;  // counts searches; 0 after a hash clear; the search increments it

inline int StatIndex(Move move, int side) {
    const int from = MoveFrom(move) | side << 1;
    const int pieces = static_cast<int>((move >> 12) & 0x3F);
    return from << 12 | MoveTo(move) << 6 | pieces;
}

// The slot of a capture by `side`, with both counts set to zero when they are of another search.
int FreshStatIndex(Move move, int side);

// The best replies to checks so far, by (square the checker arrived on x 64 + king square) x 2 + side to
// move.
constexpr int CHECK_REPLIES = 8192;
extern Move CheckReply[CHECK_REPLIES];
inline int CheckReplyIndex(Move previous, int king, int side) {
    return (MoveTo(previous) * 64 + king) * 2 + side;
}

// The score of a capture, promotion or en-passant capture by the side to move: above SAFE_CAPTURE_SCORE for
// one that loses nothing, by victim first.
constexpr int SAFE_CAPTURE_SCORE = 100000;
int CaptureScore(Move move);

// The score of a reply to a check by the side to move.
int ScoreEvasion(Move move);

// Sets history counters, recapture statistics and check replies to zero.
void ClearHistoryCounters();
void ClearCheckReplies();
void ClearRecaptureStatistics();
