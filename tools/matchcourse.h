#pragma once

#include <string>
#include <vector>

#include "core/types.h"
#include "tools/matchopenings.h"

// The games of a match as the rules see them. Several are played at once, and there is one `board`: each of
// these procedures sets it up anew from the record of a game, which takes microseconds, and holds a lock
// until it is done with it.

// How the rules end a game.
enum class Ending { NONE, MATE, STALEMATE, REPETITION, FIFTY_MOVES, NO_MATERIAL };
constexpr const char* EndingNames[] = {"", "mate", "stalemate", "repetition", "fifty moves", "too few men"};

class MatchCourse {
  public:
    explicit MatchCourse(const Opening& opening) : fen_(opening.Fen), moves_(opening.Moves) { Judge(); }

    int SideToMove() const { return sideToMove_; }
    Ending End() const { return ending_; }
    int Plies() const { return static_cast<int>(moves_.size()); }

    // Plays a move that is written as UCI wants it (e2e4, e7e8q); false when that is no legal move.
    bool Play(const std::string& text);

    // The UCI line that sets up the position.
    std::string PositionLine() const;

    // The FEN of the start, empty for the initial position, and the moves from there as game files have them,
    // in lines that all have an end.
    const std::string& Fen() const { return fen_; }
    std::string MoveText() const;

  private:
    void SetUpStart() const;
    void SetUp() const;
    void Judge();

    std::string fen_;
    std::vector<Move> moves_;  // those of the opening, too
    int sideToMove_ = WHITE;
    Ending ending_ = Ending::NONE;
};
