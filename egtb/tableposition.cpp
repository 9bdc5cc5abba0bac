#include "egtb/tableposition.h"

namespace {

// What a slider reaches in one direction, with the square that stops it.
template <int direction>
Bitboard RayAttacks(int square, Bitboard occupied) {
    const Bitboard ray = HalfRays[direction][square], blockers = ray & occupied;
    if (blockers == 0) return ray;
    const int first = SquareSteps[direction] > 0 ? LowestSquare(blockers) : HighestSquare(blockers);
    return ray ^ HalfRays[direction][first];
}

Bitboard StraightReach(int square, Bitboard occupied) {
    return RayAttacks<1>(square, occupied) | RayAttacks<3>(square, occupied) |
           RayAttacks<4>(square, occupied) | RayAttacks<6>(square, occupied);
}

Bitboard DiagonalReach(int square, Bitboard occupied) {
    return RayAttacks<0>(square, occupied) | RayAttacks<2>(square, occupied) |
           RayAttacks<5>(square, occupied) | RayAttacks<7>(square, occupied);
}

}  // namespace

MenCode MenOf(const TablePosition& position, int side) {
    constexpr MenCode NO_SET = ~0u;
    MenCode code = 0;
    for (const unsigned piece : TableKinds) {
        const int count = CountSquares(position.Men[side][piece]);
        if (count > MAX_SIDE_MEN) return NO_SET;
        code += static_cast<unsigned>(count) * OneMan(piece);
    }
    return code;
}

TablePosition ChangeSides(const TablePosition& position) {
    TablePosition changed;
    for (const int side : {WHITE, BLACK}) {
        for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
            changed.Men[ChangeSide(side)][piece] = FlipRanks(position.Men[side][piece]);
        }
    }
    changed.SideToMove = ChangeSide(position.SideToMove);
    changed.DoubleStep = position.DoubleStep < 0 ? -1 : position.DoubleStep ^ 56;
    return changed;
}

int TableSide(const TableClass& tableClass, bool isReversed, TablePosition* position) {
    if (isReversed || (!tableClass.HasBlackFile() && position->SideToMove == BLACK)) {
        *position = ChangeSides(*position);
    }
    return position->SideToMove;
}

Bitboard TableAttacks(unsigned piece, int square, Bitboard occupied) {
    switch (piece) {
        case KING:
            return KingTargets[square];
        case KNIGHT:
            return KnightTargets[square];
        case ROOK:
            return StraightReach(square, occupied);
        case BISHOP:
            return DiagonalReach(square, occupied);
        case QUEEN:
            return StraightReach(square, occupied) | DiagonalReach(square, occupied);
        default:
            return 0;
    }
}

bool IsAttacked(const TablePosition& position, int square, int bySide, Bitboard occupied) {
    const Bitboard* men = position.Men[bySide];
    if (KingTargets[square] & men[KING]) return true;
    if (KnightTargets[square] & men[KNIGHT]) return true;
    if (PawnCaptures[ChangeSide(bySide)][square] & men[PAWN]) return true;
    const Bitboard straight = (men[ROOK] | men[QUEEN]) & StraightRays[square];
    if (straight != 0 && (StraightReach(square, occupied) & straight) != 0) return true;
    const Bitboard diagonal = (men[BISHOP] | men[QUEEN]) & DiagonalRays[square];
    return diagonal != 0 && (DiagonalReach(square, occupied) & diagonal) != 0;
}

Bitboard EnPassantCapturers(const TablePosition& position) {
    if (position.DoubleStep < 0) return 0;
    return Beside(SquareBit(position.DoubleStep)) & position.Men[position.SideToMove][PAWN];
}

bool IsPlayable(const TablePosition& position) {
    const int us = position.SideToMove, them = ChangeSide(us);
    Bitboard occupied = 0;
    for (const int side : {WHITE, BLACK}) {
        for (const unsigned piece : {KING, KNIGHT, PAWN, ROOK, BISHOP, QUEEN}) {
            if (occupied & position.Men[side][piece]) return false;
            occupied |= position.Men[side][piece];
        }
    }
    if ((position.Men[WHITE][PAWN] | position.Men[BLACK][PAWN]) & ~PAWN_RANKS) return false;
    if (IsAttacked(position, position.King(them), us, occupied)) return false;
    if (position.DoubleStep < 0) return true;
    const int back = us == WHITE ? 8 : -8;
    const int behind = position.DoubleStep + back, origin = behind + back;
    return RankOf(position.DoubleStep) == (us == WHITE ? 4 : 3) &&
           (position.Men[them][PAWN] & SquareBit(position.DoubleStep)) != 0 &&
           (occupied & (SquareBit(behind) | SquareBit(origin))) == 0;
}

std::string FenOf(const TablePosition& position) {
    std::string fen;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        const auto writeEmpty = [&] {
            if (empty > 0) fen += std::to_string(empty);
            empty = 0;
        };
        for (int file = 0; file < 8; ++file) {
            const Bitboard square = SquareBit(MakeSquare(file, rank));
            char letter = 0;
            for (const unsigned piece : {KING, QUEEN, ROOK, BISHOP, KNIGHT, PAWN}) {
                if (position.Men[WHITE][piece] & square) letter = PIECE_LETTERS[piece];
                if (position.Men[BLACK][piece] & square)
                    letter = static_cast<char>(PIECE_LETTERS[piece] | 32);
            }
            if (letter == 0) {
                ++empty;
                continue;
            }
            writeEmpty();
            fen += letter;
        }
        writeEmpty();
        if (rank > 0) fen += '/';
    }
    fen += position.SideToMove == WHITE ? " w - " : " b - ";
    if (position.DoubleStep < 0) return fen + "- 0 1";
    // The square behind the pawn.
    const int behind = position.DoubleStep + (position.SideToMove == WHITE ? 8 : -8);
    fen += static_cast<char>('a' + FileOf(behind));
    fen += static_cast<char>('1' + RankOf(behind));
    return fen + " 0 1";
}
