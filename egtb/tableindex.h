#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/bitboard.h"
#include "egtb/tableclass.h"
#include "egtb/tableposition.h"

// The numbering of the positions of a class with one side to move. docs/tablebase-format.md tells the layout.
//
// The kings' squares are the outermost digit, then the men of the side to move, then the opponent's, kind by
// kind. Men of the side to move don't stand where they would give a check that nothing can block. Positions
// that can be captured en passant follow behind all the others. Kings never stand side by side; of the mirror
// images of a position one has a number, but for kings that stand on the a1-h8 diagonal both, where there are
// no pawns. Numbers are left over for placings that no game can have: these entries are broken.
class TableIndex {
  public:
    // The attack tables must stand.
    TableIndex(const TableClass& tableClass, int sideToMove);

    // How many numbers there are; those below OrdinarySize know nothing of en passant.
    int64_t Size() const { return enPassant_.back(); }
    int64_t OrdinarySize() const { return ordinary_.back(); }

    // How many of them a file holds: it ends with the last entry that is not broken.
    int64_t FileEntries() const { return fileEntries_; }

    // The number of a position of the class with this side to move; of two the lower one. Every playable
    // position has one; -1 for one that has none.
    int64_t IndexOf(const TablePosition& position) const;

    // The position of a number; false when the entry is broken.
    bool PositionAt(int64_t index, TablePosition* position) const;

    // Whether a position that PositionAt has given for the number has a lower one, too.
    bool IsSecondNumber(int64_t index, const TablePosition& position) const;

    // Bytes that the numbering needs.
    size_t Memory() const { return (ordinary_.capacity() + enPassant_.capacity()) * sizeof(int64_t); }

  private:
    // Men of one kind and side.
    struct Group {
        int Side = WHITE;
        unsigned Piece = EMPTY;
        int Count = 0;
        int Placed = 0;  // men that are placed before these, kings apart
    };
    // What has been placed before a group.
    struct Placing {
        int OtherKing;  // of the opponent
        Bitboard Kings;
        Bitboard Men = 0, OwnPawns = 0;  // kings and a pair of pawns apart
        Bitboard Pair = 0;               // the squares of a capture en passant, where there is one
    };
    // The mirrors that bring a position to the one that has a number.
    struct Symmetry {
        bool Files, Ranks, Diagonal;
        Bitboard operator()(Bitboard set) const;
        int operator()(int square) const;
    };

    void AddGroup(int side, unsigned piece);
    int CountInGroup(const Group& group, const Placing& placing) const;
    int CountSquaresFor(const Group& group, const Placing& placing) const;
    Bitboard SquaresFor(const Group& group, const Placing& placing) const;
    int64_t CountPlacings(const Group& group, const Placing& placing) const;
    void CountOffsets(bool hasPair, std::vector<int64_t>* offsets);
    bool AreKingsOnDiagonal(const TablePosition& position, const Symmetry& symmetry) const;
    Symmetry FindSymmetry(const TablePosition& position) const;
    int64_t IndexIn(const TablePosition& position, Symmetry symmetry, int capturer) const;
    bool PlaceAll(int64_t rest, int kingPair, int pawnPair, TablePosition* position) const;

    const TableClass class_;
    const int sideToMove_;
    Group groups_[2 * TABLE_KINDS];
    int groupCount_ = 0;
    std::vector<int64_t> ordinary_, enPassant_;  // the first number by pair of kings, then one past the last
    int64_t fileEntries_ = 0;
};
