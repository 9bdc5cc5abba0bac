#pragma once

#include <array>

#include "core/types.h"

// The classes of endgame tables: all the ways to give two kings up to four more men, of which the weaker side
// has at most two. A class is named by its stronger side first, and the tables call that side White; whoever
// has its men on a board plays White's part.

constexpr int TABLE_CLASSES = 440;  // numbered from 1, by their men; 0 is no class
constexpr int LAST_CLASS_OF_3 = 5;  // men, kings included
constexpr int LAST_CLASS_OF_4 = 35;
constexpr int LAST_CLASS_OF_5 = 145;

constexpr int MAX_TABLE_MEN = 6;  // kings included
constexpr int MAX_SIDE_MEN = 3;   // of one side, besides its king

// Kinds of men in the order of the tables, in which they stand in a name and in an index.
constexpr int TABLE_KINDS = 5;
constexpr unsigned TableKinds[TABLE_KINDS] = {QUEEN, ROOK, BISHOP, KNIGHT, PAWN};

// How many men of each kind a side has besides its king, two bits for each; 0 is a bare king.
using MenCode = unsigned;
constexpr MenCode OneMan(unsigned piece) {
    constexpr MenCode ones[PIECE_CODES] = {0, 0, 1 << 6, 1 << 8, 0, 1 << 2, 1 << 4, 1};
    return ones[piece];
}
constexpr int CountMen(MenCode men, unsigned piece) {
    return OneMan(piece) == 0 ? 0 : static_cast<int>(men / OneMan(piece) & 3);
}

struct TableClass {
    char Name[MAX_TABLE_MEN + 1] = {};  // "krpkn"
    int Number = 0;
    int Men = 0;  // kings included
    MenCode Code[2] = {};

    bool HasPawns() const { return CountMen(Code[WHITE], PAWN) + CountMen(Code[BLACK], PAWN) > 0; }

    // Whether a pawn can take another in passing.
    bool HasEnPassant() const { return CountMen(Code[WHITE], PAWN) > 0 && CountMen(Code[BLACK], PAWN) > 0; }

    // Whether Black to move has a file of its own. With the same men on both sides there is none: the sides
    // change places instead.
    bool HasBlackFile() const { return Code[WHITE] != Code[BLACK]; }

    // Bytes of an entry: two where mates are, or may be, longer than one byte can tell.
    int EntryBytes() const;
};

// By number; the first is no class.
extern const std::array<TableClass, TABLE_CLASSES + 1> TableClasses;

// The number of the class of two sides' men, negative when the second side is the stronger one, which plays
// White's part; 0 when there is none.
int FindTableClass(MenCode first, MenCode second);

// The same by a name in small letters.
int FindTableClass(const char* name);
