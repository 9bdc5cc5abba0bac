#pragma once

// Where knights, bishops, rooks and queens stand and how freely they move. Adds to the tapered sum of
// `eval_info`; needs the attack sets and the pawn entry.
void EvaluatePieces();

// Fills the tables by number of squares from the mobility weights; due whenever one has changed.
void FillMobilityTables();
