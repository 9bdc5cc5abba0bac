#pragma once

// Static evaluation. Everything here is written by Evaluate only.

// The scratch record of one evaluation, cleared at its start and read afterwards by the report and the
// search. Scores are centipawns and Black-positive; a bucket [side] holds what favours that side.
struct EvalInfo {
    int score;     // the result, still Black-positive
    int material;  // the material part alone
    int opening;   // the halves that the phase tapers between
    int ending;
    int side_opening[2];
    int side_ending[2];
    int tempo[2];            // on top of the side-to-move bonus
    int shelter_penalty[2];  // king shelter index
    int danger[2];           // king danger index
    int optimism[2];         // king-safety bonuses in favour of the side
    int margin;              // scaled along with the score of drawish material
    // How far the armies are gone: 0 all there, 256 bare kings. Both sides together and each on its own.
    int current_phase;
    int white_phase;
    int black_phase;
    // Whether the side's king has outlived its need of shelter.
    int ENDING[2];
};
extern EvalInfo eval_info;

// The side the program plays, whose king shelter is weighted by Cowardice; set by whoever starts an
// evaluation or a search.
extern int EngineSide;

// Stores the evaluation of the position, in centipawns from the side to move's view, within +-30000.
void Evaluate(int* result);

// Sets the three phases from the piece counts, and the ENDING flags.
void ComputePhase();
void SetEndingFlags();
