#pragma once

#include <cstdint>

// Resigning: the engine gives up after so many of its own moves in a row with so bad a score.

extern int ResignValue;  // setting: centipawns that the score must be below zero, exclusively
extern int ResignTimes;  // setting: own moves in a row

// One of the engine's own moves.
struct OwnMove {
    uint64_t Key = 0;  // HashKey after the move
    int Score = 0;     // centipawns from the engine's side
    bool IsFromBook = false;
};

// The engine's last ten moves, the newest first. Written by PushResignHistory only: whether they belong to
// the game on the board is told by their keys.
constexpr int OWN_MOVES_KEPT = 10;
extern OwnMove ResignHistory[OWN_MOVES_KEPT];

// Whether own move i, counted from the newest, has led to the position that stood on the board 2 i plies ago.
bool IsOfThisGame(int i);

// Records the move that the engine has just made, with RootScore. A forced move takes over the score of the
// move before it, so that it does not change the streak; a book move is not forced.
void PushResignHistory();

// Whether the last ResignTimes own moves of this very game all scored below -ResignValue.
bool ShouldResign();
