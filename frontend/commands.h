#pragma once

#include <vector>

// The command interpreter: console, xboard and UCI commands in one chain of keywords.

// Interprets InputLine. Ends the program for "q". A line that is no command and no move is ignored.
void InterpretCommand();

// A row of the chain.
struct Command {
    const char* Keyword;  // matched against the whole line by MatchKeyword; null for a move in coordinates
    void (*Run)();
    bool GoesOn = false;  // the chain is searched further after this command
};

// The rows that take a line, in the order in which InterpretCommand runs them; none for a line that is
// ignored.
std::vector<const Command*> FindCommands(const char* line);

// The command groups, one procedure a row; each reads Tokens and InputLine.

// gamecommands.cpp: playing, clocks, modes.
void RunMove();
void RunLevel();
void RunLoadFen();
void RunEdit();
void RunGo();
void RunUndo();
void RunRemove();
void RunDemo();
void RunXboard();

// viewcommands.cpp: what is asked about the position and the program.
void RunMoves();
void RunPerft();
void RunShowFlags();
void RunTablebaseStatus();

// help.cpp
void RunHelp();

// uci.cpp
void RunUci();
void RunUciNewGame();
void RunSetOption();
void RunPosition();
void RunDebug();
void RunPonderHit();
void RunLateStop();
void ReadGoParameters();  // of the tokens behind "go"
