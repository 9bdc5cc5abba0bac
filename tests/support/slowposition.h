#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/types.h"

// A second set of the rules, for the tests to compare with: an array of men and walks over it, sharing
// nothing with the program but the codes of men and moves.

struct SlowPosition {
    struct Man {
        unsigned Piece = EMPTY;
        int Side = WHITE;
        bool operator==(const Man&) const = default;
    };

    std::array<Man, 64> Men{};
    int SideToMove = WHITE;
    unsigned Castling = 0;
    unsigned Fifty = 0;
    int Stepped = -1;  // where a pawn stands that has just made a double step

    // The men, side, rights and last move of `board`.
    static SlowPosition FromBoard();

    bool IsEmpty(int square) const { return Men[square].Piece == EMPTY; }
    bool HasMan(int square, int side, unsigned piece) const { return Men[square] == Man{piece, side}; }
    int KingOf(int side) const;  // -1 for none

    // The squares of a walk by steps of (files, ranks) from a square up to the first man, included.
    Bitboard Walk(int square, int files, int ranks) const;

    // What a man would attack from the square.
    Bitboard AttacksFrom(int square, int side, unsigned piece) const;

    // The men of a side that attack the square.
    Bitboard AttackersOf(int side, int square) const;

    bool IsInCheck() const;
    std::vector<Move> LegalMoves() const;  // ascending
    void Play(Move move);

    // The position as a FEN, for messages.
    std::string Text() const;
};
