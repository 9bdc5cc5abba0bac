#pragma once

#include "core/types.h"

// What a check demands of the replies.
struct Check {
    Bitboard Checkers;
    Bitboard Targets;  // where a man other than the king ends the check; empty in double check
    Bitboard Flights;  // free or enemy squares around the king that no checking slider sees through it
};

// The check that the king of the side to move stands in on the square.
Check FindCheck(int king);

// Appends the replies of a side to move that is in check, each scored by ScoreEvasion. They are legal, except
// that an en-passant capture may uncover a slider; the caller tests that after making it.
void GenerateEvasions();
