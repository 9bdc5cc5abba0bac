#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/types.h"

// What the tests that walk over many positions share.

// Instrumented programs are slow: they do a twentieth of the work.
#ifdef KESTROVAN_SANITIZED
constexpr int WORK_DIVISOR = 20;
#else
constexpr int WORK_DIVISOR = 1;
#endif

// Every test begins with the initial position and an empty move list.
class CoreTest : public testing::Test {
  protected:
    void SetUp() override;
};

// The moves that a generator appends, in its order; the move list is left as it was.
std::vector<Move> MovesOf(const std::function<void()>& generate);

// The legal moves, in the order of the generators.
std::vector<Move> LegalMoves();

// The moves as text, separated by spaces.
std::string TextOf(const std::vector<Move>& moves);

// Plays random games of a fixed seed from NASTY_POSITIONS, of at most 120 plies each, and calls `visit` in
// every position; each position is entered through MakeMove. Promotions and captures en passant are
// preferred, so that rare men and moves are met. `visit` must leave the board as it was; the walk ends after
// `positions` of them or after the first failure.
void VisitPositions(int positions, uint64_t seed, const std::function<void()>& visit);

// Puts men on the board at random and calls `visit` for every position that a game could have: kings on all
// squares but mostly at home, with and without castling rights; pawns mostly near home; from no piece at all
// to three queens of a side. Ends after `boards` of them or after the first failure.
void VisitRandomBoards(int boards, uint64_t seed, const std::function<void()>& visit);
