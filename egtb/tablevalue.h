#pragma once

#include <climits>
#include <cstdint>

// What a table tells of a position, from the side to move's view: 0 is a draw, n > 0 that it mates by its
// n-th own move, -1 - n that it is mated after n own moves.
using TableValue = int;

constexpr TableValue TABLE_DRAW = 0;
constexpr TableValue TABLE_BROKEN = INT_MIN;  // no game can have the position

constexpr TableValue MateIn(int moves) {
    return moves;
}
constexpr TableValue MatedIn(int moves) {
    return -1 - moves;
}
constexpr bool IsWin(TableValue value) {
    return value > 0;
}
constexpr bool IsLoss(TableValue value) {
    return value < 0 && value != TABLE_BROKEN;
}
// The moves to a mate, of the side that mates or is mated.
constexpr int MateMoves(TableValue value) {
    return value > 0 ? value : -1 - value;
}

// The same from the view of the opponent, who has just moved here; broken entries stay what they are.
constexpr TableValue BeforeMove(TableValue value) {
    if (value == TABLE_DRAW || value == TABLE_BROKEN) return value;
    return IsWin(value) ? MatedIn(value) : MateIn(MateMoves(value) + 1);
}

// Whether the side to move rather has the first: quick mates first, then draws, then late mates against it.
constexpr bool IsBetter(TableValue value, TableValue other) {
    const auto rank = [](TableValue v) { return v > 0 ? INT_MAX - v : v < 0 ? INT_MIN - v : 0; };
    return rank(value) > rank(other);
}

// Entries of files, of one byte or of two: the highest number is a broken entry, the lower ones count mates
// in 1, 2 and so on downward to 1; 0 is a draw; mated after 0, 1 and so on moves counts from the lowest
// number but one upward to -1.
constexpr int HighestCode(int entryBytes) {
    return entryBytes == 1 ? INT8_MAX : INT16_MAX;
}
constexpr int CodeOfValue(TableValue value, int entryBytes) {
    const int highest = HighestCode(entryBytes);
    if (value == TABLE_BROKEN) return highest;
    return value > 0 ? highest - value : value < 0 ? -value - highest : 0;
}
// Every number of that many bytes has a meaning; the lowest one, which no value gives, is a broken entry.
constexpr TableValue ValueOfCode(int code, int entryBytes) {
    const int highest = HighestCode(entryBytes);
    if (code == highest || code < -highest) return TABLE_BROKEN;
    return code > 0 ? highest - code : code < 0 ? -highest - code : TABLE_DRAW;
}

// The longest mate that an entry can tell, in moves.
constexpr int LongestMate(int entryBytes) {
    return HighestCode(entryBytes) - 1;
}
