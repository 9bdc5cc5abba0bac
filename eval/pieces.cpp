#include "eval/pieces.h"

#include <algorithm>

#include "core/attacks.h"
#include "core/board.h"
#include "eval/attacksets.h"
#include "eval/credit.h"
#include "eval/pawnhash.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

constexpr Bitboard WINGS = FileBits(0) | FileBits(7);

// Centipawns by the piece and the number of safe squares that it can move to.
constexpr int MOBILITY_ROOM = 28;
Score Mobility[PIECE_CODES][MOBILITY_ROOM];

constexpr int MostMoves[PIECE_CODES] = {0, 0, 8, 0, 0, 14, 13, 27};

int AtKnot(int low, int high, int step, int length) {
    return low + (high - low) * step / length;
}

// Lays straight lines through four knots, at none, a third, two thirds and all of the moves.
void FillTable(unsigned piece, const Scores<4>& knots) {
    const int most = MostMoves[piece];
    for (int count = 0; count <= most; ++count) {
        const int segment = std::min(count * 3 / most, 2), step = count * 3 - segment * most;
        const Score low = knots[static_cast<size_t>(segment)], high = knots[static_cast<size_t>(segment) + 1];
        Mobility[piece][count] = {AtKnot(low.Opening, high.Opening, step, most),
                                  AtKnot(low.Ending, high.Ending, step, most)};
    }
}

// What the terms of a side ask about again and again.
template <int side>
struct Pieces {
    static constexpr int enemy = 1 - side;

    const Bitboard OwnPawns = board.Pieces[PAWN][side];
    const Bitboard EnemyPawns = board.Pieces[PAWN][enemy];
    const int King = static_cast<int>(board.KingSquare[side]);
    // Squares that no enemy pawn can ever attack.
    const Bitboard Holes = ~FillAhead<enemy>(eval_info.attacks[PAWN][enemy]);
    const Bitboard Outposts =
        Holes & ~WINGS & (RelativeRankBits(side, 3) | RelativeRankBits(side, 4) | RelativeRankBits(side, 5));
    // Where the pieces of a kind may safely go: not onto own pawns and king, not into the reach of lesser
    // men.
    const Bitboard Room = ~(OwnPawns | board.Pieces[KING][side] | eval_info.attacks[PAWN][enemy]);
    const Bitboard MinorAttacks = eval_info.attacks[KNIGHT][enemy] | eval_info.attacks[BISHOP][enemy];

    template <unsigned piece>
    int SafeMoves(int square) const {
        Bitboard moves = AttacksBySquare[square] & Room;
        if constexpr (piece == ROOK || piece == QUEEN) moves &= ~MinorAttacks;
        if constexpr (piece == QUEEN) moves &= ~eval_info.attacks[ROOK][enemy];
        if ((eval_info.pinned[side] & SquareBit(square)) != 0) moves &= PinLine(square);
        return CountSquares(moves);
    }

    // The line through the king that a pinned man can't leave.
    Bitboard PinLine(int square) const {
        const int step = Direction[King * 64 + square];
        return HalfRays[DirectionIndex(step)][King];
    }

    template <unsigned piece>
    void EvaluateKind() const {
        for (Bitboard men = board.Pieces[piece][side]; men != 0;) {
            const int square = PopLowest(men), moves = SafeMoves<piece>(square);
            Credit<side>(Mobility[piece][moves]);
            if constexpr (piece == KNIGHT || piece == BISHOP) EvaluateMinor<piece>(square);
            if constexpr (piece == ROOK) EvaluateRook(square, moves);
        }
    }

    template <unsigned piece>
    void EvaluateMinor(int square) const {
        const Bitboard bit = SquareBit(square);
        if ((bit & Outposts) != 0) {
            Credit<side>(piece == KNIGHT ? KnightOutpost : BishopOutpost);
            if ((bit & eval_info.attacks[PAWN][side]) != 0)
                Credit<side>(piece == KNIGHT ? KnightOutpostDefended : BishopOutpostDefended);
        }
        if ((ShiftAhead<side>(bit) & (OwnPawns | EnemyPawns)) != 0) Credit<side>(MinorBehindPawn);
        if constexpr (piece == BISHOP) EvaluateBishop(bit);
    }

    void EvaluateBishop(Bitboard bit) const {
        const Bitboard colour = (bit & LIGHT_SQUARES) != 0 ? LIGHT_SQUARES : ~LIGHT_SQUARES;
        const Bitboard pawns = OwnPawns & colour;
        Credit<side>(BishopPawns * CountSquares(pawns));
        const Bitboard blocked = pawns & CENTRE_FILES & ShiftAhead<enemy>(AllOccupied());
        Credit<side>(BishopBlockedPawns * CountSquares(blocked));
        if ((bit & (RelativeRankBits(side, 6) | RelativeRankBits(side, 5)) & WINGS) != 0) EvaluateTrap(bit);
    }

    // A bishop on the rim of the enemy's side whose way back a defended pawn has closed and that has no way
    // forward either.
    void EvaluateTrap(Bitboard bit) const {
        const Bitboard back = Neighbours(ShiftAhead<enemy>(bit)), forward = Neighbours(ShiftAhead<side>(bit));
        const bool isClosed = (back & EnemyPawns & eval_info.attacked[enemy]) != 0;
        const bool isOpen = (forward & ~board.Occupied[side] & ~eval_info.attacked[enemy]) != 0;
        if (isClosed && !isOpen) Credit<side>(TrappedBishop);
    }

    void EvaluateRook(int square, int moves) const {
        const Bitboard file = FileBits(FileOf(square));
        const unsigned fileBit = 1u << FileOf(square);
        if ((OwnPawns & file) == 0) {
            Credit<side>((EnemyPawns & file) == 0 ? RookOpenFile : RookHalfOpenFile);
            if ((pawn_cache.WeakFiles(enemy) & fileBit) != 0) Credit<side>(RookOnWeakPawn);
        } else if (moves <= 3) {
            EvaluateBoxedRook(square);
        }
        const Bitboard rooks = board.Pieces[ROOK][side] & ~SquareBit(square);
        if ((rooks & file & AttacksBySquare[square]) != 0) Credit<side>(RookDoubled);
        EvaluateSeventh(square);
    }

    // A rook that the own king shuts in on its wing; worse when castling can't free it any more.
    void EvaluateBoxedRook(int square) const {
        const int kingFile = FileOf(King), rookFile = FileOf(square);
        const bool isOuter = rookFile != kingFile && (kingFile < 4) == (rookFile < kingFile);
        if (!isOuter || RelativeRank(side, King) != 0 || RelativeRank(side, square) > 1) return;
        const bool canCastle = (board.CastlingFlags & (ShortRight(side) | LongRight(side))) != 0;
        Credit<side>({TrappedRook[canCastle ? 0 : 1], 0});
    }

    // The seventh rank counts while it holds the enemy king back or has pawns to take.
    void EvaluateSeventh(int square) const {
        if (RelativeRank(side, square) != 6) return;
        const bool hasAim = (EnemyPawns & RelativeRankBits(side, 6)) != 0 ||
                            RelativeRank(side, static_cast<int>(board.KingSquare[enemy])) == 7;
        if (hasAim) Credit<side>(RookSeventh);
    }

    void Evaluate() const {
        EvaluateKind<KNIGHT>();
        EvaluateKind<BISHOP>();
        EvaluateKind<ROOK>();
        EvaluateKind<QUEEN>();
    }
};

}  // namespace

void FillMobilityTables() {
    FillTable(KNIGHT, MobilityKnight);
    FillTable(BISHOP, MobilityBishop);
    FillTable(ROOK, MobilityRook);
    FillTable(QUEEN, MobilityQueen);
}

void EvaluatePieces() {
    Pieces<WHITE>().Evaluate();
    Pieces<BLACK>().Evaluate();
}
