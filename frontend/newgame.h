#pragma once

#include "core/types.h"

// The game as a whole: what starts it anew and what plays in it.

extern int ForceMode;  // the engine only records moves; set and cleared by commands and by input in a search
extern int FritzMode;  // new games keep what was learnt; set by "fritz", never cleared

// Sets up the initial position and the limits of a new game: no depth limit, no fixed time, no force mode,
// the engine playing Black. Outside UCI and fritz mode also forgets everything that belongs to the old game.
// Clocks and time control stay.
void NewGame();

// Writes the end of a game that is given up for another into the book, if that is due and the engine itself
// has made the last move.
void LearnAbandonedGame();

// The same for a game in which the engine's last score was 0, as it is in the book: nothing else tells that a
// game is at its end.
void LearnPreviousGame();

// Forgets what the searches of the game have learnt; the position stays.
void ResetGameMemory();

// Makes a legal move in the game.
void PlayMove(Move move);

// Whether moves can be tried on the board; says what is wrong with one that names men who are not there.
bool CheckMen();

// Whether the position can be searched; says what is wrong with one that can't, in the active dialect.
bool CheckPosition();
