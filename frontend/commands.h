#pragma once

#include <string>
#include <vector>

// The command interpreter: console, xboard and UCI commands in one chain of keywords.

// Interprets InputLine. Ends the program for "q". A line that is no command and no move is ignored.
void InterpretCommand();

// A row of the chain.
struct Command {
    const char* Keyword;  // matched against the whole line by MatchKeyword; null for a move in coordinates
    void (*Run)();
    // Whether the chain is searched further after this command.
    bool GoesOn = false;
    // Whether it may be carried out while a search goes on whose move nobody waits for.
    bool IsAside = false;
};

// The rows that take a line, in the order in which InterpretCommand runs them; none for a line that is
// ignored.
std::vector<const Command*> FindCommands(const char* line);

// Whether the line is a command or a move rather than one that is ignored.
bool IsCommandLine(const char* line);

// Carries out a line that disturbs no search, such as a question; false for any other. InputLine and Tokens
// are overwritten.
bool AnswerAside(const std::string& line);

// The command groups, one procedure a row; each reads Tokens and InputLine.

// gamecommands.cpp: playing, clocks, modes.
void EnterMove(const char* text);  // a line that is a move, or its end
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

// xboard.cpp: what protocol version 2 adds.
void RunProtover();
void RunSetBoard();
void RunPing();
void RunUserMove();
void RunMemory();
void RunTablebasePath();
void RunHint();
void RunDrawOffer();

// uci.cpp
void RunUci();
void RunUciNewGame();
void RunSetOption();
void RunPosition();
void ChangeTablebasePath(const char* path);
void RunDebug();
void RunPonderHit();
void RunLateStop();
void ReadGoParameters();  // of the tokens behind "go"
