#pragma once

// Input and limits while the search runs. Input is looked at between nodes only.

extern int PollCountdown;  // nodes until the next CheckTime; counted down by the search

// The periodic check of a node whose PollCountdown has gone below zero: input, node limit, clock. May set
// StopRequested, and sets PollCountdown anew.
void CheckTime();

// Takes every line that waits, up to one that ends the search, and carries it out or keeps it for after the
// search: behind a line that has been kept, all but the most urgent are kept, so that their order stays. A
// search that waits for input ends for a kept line. At the end of input a search that nothing else would end
// is ended.
void PollDuringSearch();

// Polls, without searching, until input ends the pondering or infinite search that has come to its end early.
void WaitForInput();

// Sets PollCountdown for the next stretch of nodes: PollInterval, or what the node limit leaves.
void SetPollCountdown();
