#pragma once

#include "tests/support/slowposition.h"

// A second telling of the pawn structure and of the king shelter with their default weights, for the tests to
// compare with: loops over the men, sharing nothing with the program.

struct SlowPawns {
    int Opening = 0, Ending = 0;                              // centipawns, Black-positive
    int Passed[2]{}, Files[2]{}, Candidates[2]{}, Weak[2]{};  // by side: sets of files, bit 0 = a
    int Defects[2][2]{};                                      // by side and wing, the king's wing first
};
SlowPawns TellPawns(const SlowPosition& position);

struct SlowShelter {
    int Index;
    int Value;      // centipawns of the index at a factor of 100
    int QueenLeft;  // centipawns, 0 or below, whatever the factor
};
SlowShelter TellShelter(const SlowPosition& position, int side);
