#pragma once

#include "core/movelist.h"
#include "core/types.h"

// The staged generators. Each appends pseudo-legal moves of the side to move, with ordering scores, to the
// move list; whether the mover's king is left in check is for the caller to test. The list must have room.

// Captures of men on `targets` (usually the opponent's men) and en-passant captures, scored by CaptureScore.
// Also sets KingAttackCount of the side to move.
void GenerateCaptures(Bitboard targets);

// By side: how many of its knights, bishops, rooks and queens attacked the opponent's king or a square beside
// it when GenerateCaptures last ran for the side. Whoever wants the count of an earlier node must keep it.
extern int KingAttackCount[2];

// Sets both counts to zero.
void ResetKingAttackCounts();

// Promotions without capture, scored by CaptureScore: to queen, rook, knight and bishop.
void GeneratePromotions();

// The same pawns, to queen and knight only.
void GenerateQueenKnightPromotions();

// Castling, then moves that neither capture nor promote; the score is the history counter of set `selector`
// (0 or 1). The king's own square is deliberately not tested for castling: a side in check gets
// GenerateEvasions instead.
void GenerateQuiet(int selector);

// The three stages in order, for callers that want every pseudo-legal move of a side that is not in check.
void GenerateAllStages();
