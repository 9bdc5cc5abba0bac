#pragma once

// The span of material, around what the root is worth, within which a node is evaluated in full. Outside of
// it a line has gone wrong by so much that its material alone tells how it ends.

// Centipawns from the engine's side, a mover's balance of `board.Material` against the opponent's.
extern int MaterialLow;
extern int MaterialHigh;

// Sets the window from RootScore, IterationDepth and the material of the root position, which must be on the
// board. Due before each iteration and whenever RootScore has changed.
void SetMaterialWindow();
