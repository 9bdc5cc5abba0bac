#pragma once

// The board editor. Reads characters of standard input up to "." (or the end of input): "#" empties the
// board, "c" changes the colour of the men that follow (White at first), a piece letter or "x" with a square
// puts a man there or takes one off. Taking off deliberately touches squares and line occupancy only, so a
// board is edited cleanly from "#". Prints "Error" for anything else. At the end castling rights follow from
// the men and the game is forgotten; the caller resets the search. What stands behind "." on its line is left
// to be read.
void EditBoard();
