#pragma once

// What can be wrong with a board that was set up by hand.

// Whether a piece set names a man that does not stand on its square, as after taking men off in edit mode
// without clearing the board. Moves can't be made on such a board.
bool HasPhantomMen();

// Why no game can have the position, in a few words, or null for a position that can be played.
const char* FindPositionFault();
