#pragma once

#include "core/types.h"

// Plays a move on `board` and pushes it onto History. The move must come from the generators or have been
// checked by a parser; its bits above 20 are 0. With `save` the fields that UnmakeMove copies back are
// written into History[HistoryLength] first; without it that record must already hold them, as it does after
// a sibling move has been made and unmade. History must have room.
void MakeMove(Move move, int save);

// Takes back the last move made. History must not be empty.
void UnmakeMove();

// Takes back the last move of the game, whichever side is to move now: a command may have passed the turn
// since. False, and nothing done, when there is none, or only a double step that came with a set-up position
// and can't have been played in it.
bool TakeBackMove();

// The null move: passes the turn and leaves everything else, Fifty included, as it is. Not for the game
// itself.
void MakeNullMove();
void UnmakeNullMove();

// The same as MakeMove and UnmakeMove for a mover known at compile time.
template <int side>
void MakeMoveOf(Move move, int save);
template <int side>
void UnmakeMoveOf();
