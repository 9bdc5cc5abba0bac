#pragma once

// Whether every derived field of `board` is what AddPiece makes of the men on its squares; leaves the board
// as it was. What doesn't follow from the men is not looked at: SideToMove, CastlingFlags, Fifty, the king
// row of PieceNumber. NO_SIGNATURE passes whatever the counts are: it only says that the table isn't used.
// False after edit mode has taken men off without clearing the board, or after a programming error.
bool IsBoardExact();
