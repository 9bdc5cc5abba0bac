#pragma once

#include "core/types.h"

// Questions about attacks on the current board. They read `board` and the attack tables and change nothing.

// Whether a man of `side` attacks the square.
bool IsSquareAttacked(int side, int square);

// All men of `side` that attack the square.
Bitboard AttackersOf(int side, int square);

// What a man of code `piece` on the square attacks; `side` matters for pawns only. Codes without a piece give
// the empty set.
Bitboard AttacksFrom(int square, int side, unsigned piece);

// The sliders of both sides that stand behind `square` as seen from `target` and bear on it along that line,
// or the empty set. There must be a line; the men on it up to `square` don't matter.
Bitboard XrayRay(int target, int square);

// Whether nothing but the man on `square` stands between `target` and a slider of `side` that would bear on
// it.
bool IsLoneBlocker(int target, int square, int side);

// Whether the man of the side to move on the square is pinned against its own king.
bool IsPinned(int square);

// Whether the king of `side` is attacked.
bool IsKingAttacked(int side);
