#pragma once

#include "core/types.h"
#include "search/nodeeval.h"

// A node of the full-width search: what its parts hand to each other.
struct Node {
    int Alpha;
    int Beta;
    int Depth;  // sixtieths of a ply, at least one ply
    int Type;   // 0 in the principal variation, elsewhere 1 and -1 by turns
    bool IsInCheck;
    bool HasFullExtensions = false;  // extensions are worth all they can be
    bool IsSimpleEnding = false;     // quiet moves are looked at less deeply
    bool ForbidsNull = false;        // the table knows that passing won't reach beta
    int MateThreat = 0;              // 1 when passing gets the side to move mated
    int SearchFlags = 0;             // of the position's table entry
    int Selector = 0;                // the set of history counters in use
    Move HashMove = NO_MOVE;         // from the table; verified
    NodeEvaluation Eval = {};        // nothing in check
};

// Whether a pseudo-legal move or, in check, a generated reply may be played.
bool IsLegalCandidate(Move move, bool isInCheck);

// A move that comes from a table, once it has proved playable in the position on the board, else 0. Outside
// of check it may still leave the own king attacked.
Move VerifiedMove(Move move, bool isInCheck);
