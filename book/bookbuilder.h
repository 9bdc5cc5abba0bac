#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "book/pgnreader.h"
#include "book/recordstore.h"

// Makes a book out of games.

struct BookOptions {
    int Version = 1;      // 0: moves have weights; 1: results
    int Depth = 24;       // plies of a game that count
    int MinGames = 3;     // a move needs so many games,
    double MinShare = 0;  // so large a part of its position's games, in percent,
    double MinScore = 0;  // and so good a score for its side, in percent
    int MaxCount = 254;   // the largest count of an entry, 1..254: the smaller, the more later games weigh
    int64_t MemoryBytes = int64_t{256} << 20;  // for the records of moves
};

struct BookTotals {
    int64_t Positions = 0, Moves = 0, Bytes = 0;
};

// What has become of a game.
enum class GameUse { USED, SET_UP, NO_RESULT, NO_MOVES };

// The results of a move as a book has them.
struct MoveResults {
    uint32_t Good, Bad;
};

// Scales the results of a position's moves together, so that none is above `limit` and no move with games
// loses all of them.
void ScaleResults(std::vector<MoveResults>& moves, uint32_t limit);

class BookBuilder {
  public:
    // The book is to be written to `path`; temporary files stand beside it. Failures, here and below, throw a
    // BookError.
    BookBuilder(const BookOptions& options, const std::string& path);

    // Counts a game that has been read without fault, or leaves it out and says why. Uses `board`.
    GameUse AddGame(const PgnGame& game);

    // Takes the moves of a line of openings, whatever its result: they stand in the book without results, in
    // positions for which the games have no move. Those that the line marks as mistakes are left out.
    GameUse AddLine(const PgnGame& game);

    // Writes the book in place of what has the name already, once it is complete. Nothing can be added
    // afterwards.
    BookTotals Write();

    int RunsWritten() const { return records_.RunsWritten(); }

  private:
    GameUse AddMoves(const PgnGame& game, const MoveRecord results[2]);

    BookOptions options_;
    std::string path_;
    RecordStore records_;
};
