#pragma once

#include "core/types.h"
#include "search/node.h"

// Hands out the moves of a node, best first, each stage generated when it is reached: the table's move,
// captures and promotions, killers, quiet moves. In check all replies are one stage. The moves are
// pseudo-legal. They lie in the move list from where it ended when the picker was made; the destructor cuts
// the list back.
class MovePicker {
  public:
    explicit MovePicker(const Node& node);
    ~MovePicker();
    MovePicker(const MovePicker&) = delete;
    MovePicker& operator=(const MovePicker&) = delete;

    // The next move, 0 at the end. `score` is its ordering score; the table's move and killers have those of
    // the constants below.
    Move Next(int* score);

    // The stages as they stand in the list, for whoever looks at moves in no particular order. What has been
    // generated here is not generated again.
    struct Span {
        int First, End;
    };
    Span Captures();
    Span Quiets();
    Span Evasions() const { return {start_, capturesEnd_}; }
    Move Killer(int i) const { return killers_[i]; }  // 0 where there is none that can be played

  private:
    enum Stage { HASH_MOVE, CAPTURES, KILLERS, QUIETS, EVASIONS };

    Move NextOf(Span span, int* score);
    bool WasTried(Move move) const;
    void FindKillers();

    // Raises the scores of quiet moves that bring a piece out of danger, and lowers those of moves into the
    // reach of a pawn.
    void RateQuiets(int first);

    const Node& node_;
    int start_;
    int capturesEnd_ = -1;  // -1 while not generated
    int quietsEnd_ = -1;
    int next_;
    int killer_ = 0;
    Move killers_[2] = {NO_MOVE, NO_MOVE};
    Stage stage_;
};

constexpr int HASH_MOVE_SCORE = 0x7FFFFFFF;
constexpr int KILLER_SCORE = 50000;  // and one less for the second
constexpr bool IsKillerScore(int score) {
    return score == KILLER_SCORE || score == KILLER_SCORE - 1;
}
