#pragma once

// Counts the leaf moves of the tree of `depth` plies below the current position; 0 below depth 1. Castling
// out of check is counted, deliberately: the tree is walked with the staged generators alone. The count wraps
// at 32 bits. The board is left as it was; depth is at most MAX_PERFT_DEPTH and History must have room for
// it.
constexpr int MAX_PERFT_DEPTH = 128;
int Perft(int depth);
