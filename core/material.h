#pragma once

#include "core/types.h"

// The material signature: a mixed-radix number of the counts of men, the index of the material table. Eight
// base-3 digits for the pieces, then two base-9 digits for the pawns.

constexpr uint32_t SIGNATURE_COUNT = 531441;
// Three or more queens, rooks, bishops or knights of one side: outside the table.
constexpr uint32_t NO_SIGNATURE = SIGNATURE_COUNT;

// What one man adds, by piece code and side.
constexpr uint32_t SignatureWeight[PIECE_CODES][2] = {
    {0, 0}, {0, 0}, {729, 2187}, {6561, 59049}, {0, 0}, {9, 27}, {81, 243}, {1, 3},
};

// Sets `board.MaterialSignature` from `board.PieceNumber`.
void ComputeMaterialSignature();
