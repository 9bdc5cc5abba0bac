#pragma once

#include "core/movelist.h"
#include "core/types.h"

// The root moves: the first RootMoveCount entries of the move list, with what the root search knows of each.
// Entry 0 is the best move so far. Written by PrepareRoot and the root search.

extern int RootMoveCount;
extern int64_t RootNodes[POSITION_MOVES];  // spent below the move in the last iteration
extern int RootGivesCheck[POSITION_MOVES];

// Move i of the root list; 0 beyond its end.
Move RootMove(int i);

// Moves root entry i to position 0, with all that is known of it, and shifts those before it down.
void MoveToFront(int i);

// The restriction of a UCI "go searchmoves"; none when the count is 0. Set by commands.
constexpr int SEARCH_MOVES_SIZE = 256;
extern Move SearchMoves[SEARCH_MOVES_SIZE];
extern int SearchMovesCount;

// The root score of the last completed search, from the view of the side that was to move then. Written by
// the thinking driver; "clean" and what resets a game's memory set it to 0.
extern int LastScore;
extern int LastScoreSide;

// LastScore from the side to move's view.
int LastScoreToMove();

// Fills the root list with the legal moves in the order in which they are to be searched, with descending
// ordering scores from 512, and RootScore with what is known of the position. Outside UCI mode announces a
// result that the rules of draws, mate or stalemate give. Returns 1 when there is no legal move, else 0.
// Empties the move list first.
int PrepareRoot();

// Announces, outside UCI mode and pondering, the draws that the position on the board is by rule. The search
// goes on: the opponent may play on, too.
void AnnounceDraws();
