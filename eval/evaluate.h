#pragma once

#include "core/types.h"

// Static evaluation. Everything here is written by Evaluate and the terms it calls only.

// The scratch record of one evaluation, cleared at its start and left for whoever wants to know more
// than the result: the report, the search. Scores are centipawns and Black-positive; a bucket [side] holds
// what favours that side.
struct EvalInfo {
    int score;     // the running score; at the end the result, still Black-positive
    int material;  // the material part alone
    int opening;   // the halves that the phase tapers between
    int ending;
    int pawn_structure;   // the tapered score of the pawn skeleton alone; 0 where it was not asked for
    int side_opening[2];  // king safety and passed pawns, which fade with the side's own phase
    int side_ending[2];
    int tempo[2];            // on top of the side-to-move bonus
    int shelter_penalty[2];  // king shelter index, 0 or more
    int danger[2];           // what the side brings against the enemy king: king danger index, 0..63
    int optimism[2];         // king-safety bonuses in favour of the side
    int margin;              // scaled along with the score of drawish material
    // How far the armies are gone: 0 all there, 256 bare kings. Both sides together and each on its own.
    int current_phase;
    int white_phase;
    int black_phase;
    // Whether the side's king has outlived its need of shelter.
    int ENDING[2];
    // Whether the side can't win: by its material or because the enemy king holds the corner before its
    // rook's pawns. Only in endings of little material.
    int cannot_win[2];

    // Attack sets. Squares defended by the side's men count as attacked.
    Bitboard attacks[PIECE_CODES][2];  // by all men of a kind
    Bitboard attacked[2];              // by anything
    Bitboard attacked_twice[2];        // by two men or more
    Bitboard pinned[2];                // the side's men that a slider pins to their king
    Bitboard passed_pawns[2];          // the side's pawns on its passed files
};
extern EvalInfo eval_info;

// The side the program plays, whose king shelter is weighted by Cowardice; set by whoever starts an
// evaluation or a search.
extern int EngineSide;

// Stores the evaluation of the position, in centipawns from the side to move's view, within +-SCORE_LIMIT. A
// pure function of the position, the weights, the personality and EngineSide: what caches hold doesn't
// matter.
void Evaluate(int* result);

// Evaluations stay below what the search takes for a mate.
constexpr int SCORE_LIMIT = 30000;

// Returns score x factor / 256 (truncated toward zero) and scales `eval_info.margin` by the same factor.
int ScaleScore(int score, int factor);

// Sets the three phases from the piece counts.
void ComputePhase();

// Sets the phases and the ENDING flags: from the material table, or by the rules when the signature is out of
// range.
void SetEndingFlags();
