#pragma once

// Resigning: the engine gives up after so many of its own moves in a row with so bad a score.

extern int ResignValue;  // setting: centipawns that the score must be below zero, exclusively
extern int ResignTimes;  // setting: own moves in a row

// Records the move that the engine has just made, with RootScore. A forced move takes over the score of the
// move before it, so that it does not change the streak.
void PushResignHistory();

// Whether the last ResignTimes own moves of this very game all scored below -ResignValue.
bool ShouldResign();
