#pragma once

// Makes the position on `board` quiet: plays the captures, promotions and evasions that both sides would by
// the evaluation, as long as one of them gains by it. False when it stays in the middle of something: the
// side to move is in check or has no move, or the captures don't end. The game is forgotten.
bool ResolveToQuiet();
