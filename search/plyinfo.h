#pragma once

#include "core/types.h"

// What the search keeps per ply from the root.

constexpr int PLY_RECORDS = 196;

// The deepest ply that a node may have. A node there evaluates and returns.
constexpr int MAX_PLY = 190;

// What a node has found out about the move that it is searching, and about itself.
enum PlyFlag : int {
    FLAG_CHECK = 1,          // the move gives check and was extended for it
    FLAG_RECAPTURE = 4,      // the move was extended as a recapture
    FLAG_PASSED_PUSH = 8,    // the move pushes a passed pawn
    FLAG_BOXED_KING = 16,    // a quiescence node tries quiet checks only because the enemy king is boxed in
    FLAG_THREAT = 32,        // the move makes a threat that the exchange test doesn't refute
    FLAG_REDUCED = 64,       // a reduced search of the move is under way
    FLAG_PAWN_ENDING = 128,  // the move was extended because it leaves kings and pawns only
};

struct PlyRecord {
    Move BestMove;    // what the node at this ply returns as best, as the table has it, 0 for none
    int InCheck;      // the side to move at this ply is in check; set by the parent
    int GivesCheck;   // the move being searched from this ply gives check
    int Flags;        // PlyFlag bits
    Move Killer1[2];  // by side: the last two quiet moves that cut off at this ply
    Move Killer2[2];
};

extern PlyRecord PlyInfo[PLY_RECORDS];
extern int Ply;  // of the current node, 0 at the root
