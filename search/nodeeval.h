#pragma once

#include "core/types.h"

// What a node knows of its position without searching.
struct NodeEvaluation {
    int Score = 0;              // centipawns from the side to move's view
    int Optimism[2] = {0, 0};   // by side: its king-safety bonuses, centipawns
    int PawnStructure = 0;      // centipawns from the side to move's view
    Bitboard Attacked[2] = {};  // by side: squares attacked
    bool IsLazy = false;        // by material alone: there is nothing but the score
};

// The lazy cut-off of a node that is not in check: whether the material alone is so far outside of the window
// (materialwindow.h) that the side to move's balance, a pawn about to promote allowed for, stands for the
// node's score. True, and the score, when that reaches beta.
bool CutsOffByMaterial(int beta, int* score);

// Evaluates the position on the board, whose side to move is in check only where a line is cut short: by its
// material outside of the window, else in full. Scores and the side terms fade as the fifty-move counter
// grows.
void EvaluateNode(NodeEvaluation* evaluation);
