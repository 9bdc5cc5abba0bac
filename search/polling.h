#pragma once

#include "core/types.h"

// Input and limits while the search runs. Input is looked at between nodes only.

extern int PollCountdown;  // nodes until the next CheckTime; counted down by the search

// The periodic check of a node whose PollCountdown has gone below zero: input, node limit, clock. May set
// StopRequested, and sets PollCountdown anew.
void CheckTime();

// Takes every line that waits and carries it out or keeps it for after the search, up to one that ends the
// search. At the end of input a search that nothing else would end is ended.
void PollDuringSearch();

// Polls, without searching, until input ends the pondering or infinite search that has come to its end early.
void WaitForInput();

// What the last search expected of the next one: its score from the engine's side, and the move that it would
// play there, 0 for none. Written by the root search.
extern int PreviousScore;
extern Move ExpectedMove;
