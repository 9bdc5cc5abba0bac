#pragma once

// King and pawn against king, solved: a bit for each placing of the men, built at start-up.

// Fills the table; a tenth of a millisecond. The attack tables must stand.
void InitPawnBitbase();

// Whether the side with the pawn wins, whichever side that is. Squares are those of the board, `pawnSide` the
// side of the pawn, `sideToMove` who is on move. The position must be legal.
bool IsPawnEndingWon(int pawnSide, int strongKing, int weakKing, int pawn, int sideToMove);
