#pragma once

#include "core/movelist.h"
#include "core/types.h"

// The root moves: the first RootMoveCount entries of the move list, with what the root search knows of each.
// Entry 0 is the best move so far. Written by PrepareRoot and the root search.

extern int RootMoveCount;
extern int64_t RootNodes[POSITION_MOVES];  // spent below the move in the last iteration
extern int RootGivesCheck[POSITION_MOVES];

// Centipawns from the engine's side. Only the entries that are lines of play have one that means something:
// the first, or the first MultiPvCount.
extern int RootScores[POSITION_MOVES];
inline constexpr int& RootScore = RootScores[0];  // of the best root move

// Move i of the root list; 0 beyond its end.
Move RootMove(int i);

// The place of a move in the root list, -1 when it isn't there.
int FindRootMove(Move move);

// Moves root entry `from`, with all that is known of it, to place `to`; those between make room.
void ShiftRootMove(int from, int to);

// Moves root entry i to the front and reports it as better than what stood there; its score has been set.
void MoveToFront(int i);

// Orders the entries from `first` on by the nodes that the last iteration spent on them, most first. Equals
// keep their order.
void SortRootMoves(int first);

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
