#pragma once

// Prints the board, rank 8 first: two characters a square, a star before a black man.
void PrintBoard();
