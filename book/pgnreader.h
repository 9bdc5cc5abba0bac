#pragma once

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "book/pgnlexer.h"
#include "core/san.h"
#include "core/types.h"

// Games out of files in portable game notation, as strict or as careless as people write them.

enum class GameResult { UNKNOWN, WHITE_WINS, BLACK_WINS, DRAWN };

struct PgnGame {
    int64_t Number = 0;  // in the file, from 1
    int64_t Line = 0;    // where it begins, from 1
    GameResult Result = GameResult::UNKNOWN;
    bool HasSetUp = false;        // begins from another position than the initial one
    bool HasTagComment = false;   // in braces, between its tags or before the first tag of the file
    std::vector<Move> Moves;      // the first of the game
    std::vector<bool> IsMistake;  // by place in Moves: written with ? or ??
    std::string Event, White, Black, ResultTag, Fen, Variant;  // tags, empty without them

    // Of a broken game; Moves holds those before the fault.
    int64_t FaultLine = 0;
    std::string Fault;
    SanResult MoveFault = SAN_FOUND;  // what is wrong with FaultMove
    std::string FaultMove;            // its text, where a move is at fault
};

enum class PgnStatus { GAME, BROKEN, END };

// Sets up the position that a game begins from; of a broken game only when it has moves.
void SetUpStart(const PgnGame& game);

class PgnReader {
  public:
    // The stream stays the caller's. At most `maxPlies` moves of a game are resolved, what stands behind them
    // is not looked at.
    explicit PgnReader(std::FILE* stream, int maxPlies = INT_MAX) : lexer_(stream), maxPlies_(maxPlies) {}

    // Reads the next game. Its position and moves are set up on `board`, where they stay. After a broken one
    // the reader goes on with the game behind it. The result is the one behind the moves, or else the tag's.
    PgnStatus Next(PgnGame& game);

    // Whether END was an error of reading.
    bool HasReadError() const { return lexer_.HasReadError(); }

  private:
    void Advance() { token_ = lexer_.Take(); }
    void ReadTags(PgnGame& game);
    void ReadMoves(PgnGame& game);
    void ReadMove(PgnGame& game);
    void Break(PgnGame& game, std::string fault);
    void BreakAtMove(PgnGame& game, SanResult fault);

    PgnLexer lexer_;
    PgnToken token_ = PgnToken::END;  // the next one, if it has been read
    bool isTokenRead_ = false;
    int maxPlies_;
    int64_t number_ = 0;
};
