#pragma once

#include "core/types.h"

// What the search keeps per ply from the root.

constexpr int PLY_RECORDS = 196;

// The deepest ply that a node may have. A node there evaluates and returns.
constexpr int MAX_PLY = 190;

struct PlyRecord {
    Move BestMove;    // what the node at this ply returns as best, 0 for none
    int InCheck;      // the side to move at this ply is in check; set by the parent
    int GivesCheck;   // the move being searched from this ply gives check
    Move Killer1[2];  // by side: the last two quiet moves that cut off at this ply
    Move Killer2[2];
};

extern PlyRecord PlyInfo[PLY_RECORDS];
extern int Ply;  // of the current node, 0 at the root
