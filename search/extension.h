#pragma once

#include "core/types.h"
#include "search/node.h"

// A move as the full-width search is about to make it, and how deep it is to be searched. Changes of depth
// are sixtieths of a ply, on top of the ply that every move costs.
struct Candidate {
    ::Move Move;
    int Score;     // ordering score
    bool IsFirst;  // of the node
    bool GivesCheck;
};

// The change of depth for a move: 0 for the first, a ply less for the others, and what extends it on top, 0
// at most (a ply for one that leaves kings and pawns only). Sets the flags of PlyInfo[Ply]. `alternative` is
// the same or, for a move that seems to lose material for nothing, a further ply less.
int ComputeExtension(const Node& node, const Candidate& candidate, int* alternative);
