#pragma once

// What the learning file says of the position on the board: the depth behind it, in sixtieths of a ply, and
// the score from the side to move's view, never one of a mate. False when it says nothing.
bool FindLearnedScore(int* depth, int* score);
