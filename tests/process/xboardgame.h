#pragma once

#include <string>

// A game between two engines under the xboard protocol.

struct XboardGame {
    std::string Result;  // the line that an engine has ended it with, or "too long"
    int Plies = 0;
};

// Plays from the set-up on, the first engine to move, until an engine says a result. Each gets the set-up
// lines and the settings that are its own; they are told each other's moves and nothing else.
XboardGame PlayXboardGame(const std::string& setUp, const std::string& firstSettings,
                          const std::string& secondSettings);

// Whether a line ends a game.
bool IsGameResult(const std::string& line);
