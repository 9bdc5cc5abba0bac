#pragma once

#include <vector>

#include "core/types.h"
#include "egtb/tablevalue.h"

// What tables and rules together know of the moves of a position.

struct RankedMove {
    ::Move Move;
    TableValue Value;      // of the position before the move, had it no other
    bool IsProgress;       // a capture or a pawn move
    bool IsRepetition;     // the position behind it has occurred before
    bool IsLate;           // the fifty-move rule may end the game before the mate
    TableValue Unclaimed;  // what the tables say where a rule makes it a draw, should nobody claim it
    int Traps;             // drawn: permille of the opponent's replies that lose
};

// The value of every move, which must be legal in the position on the board; empty when that of a single one
// is not known. Positions that end the game count as what they are: mate, stalemate, too little material, the
// fifty-move rule, a third occurrence. TablebaseHits counts the answers of the tables.
std::vector<RankedMove> ValueMoves(const std::vector<Move>& moves);

// Counts the Traps of the drawn moves, in a timed search for a moment only. A reply that is easily found,
// because it holds the draw by taking a man, makes a move as harmless as one that repeats the position.
void CountTraps(std::vector<RankedMove>& moves);

// Orders the moves, best first; equals keep their order.
// Wins: the quickest; but none that the fifty-move rule may forestall before a capture or a pawn move that
// wins, too. Draws: what is won rather than lost if nobody claims it, then most traps; pawns are kept for
// later. Losses: the longest, or what the fifty-move rule may save. Equal wins get on with the game, equal
// losses hold it up.
void RankMoves(std::vector<RankedMove>& moves);

// The best legal move by this order, Traps apart, which cost too much for every line that is printed; 0 when
// there is none or some value is not known.
Move FindTableMove();
