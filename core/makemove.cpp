#include "core/makemove.h"

#include <cassert>

#include "core/bitboard.h"
#include "core/board.h"
#include "core/keys.h"
#include "core/material.h"
#include "core/psqt.h"

// Side and piece are template parameters throughout, so that every update below is a few loads and XORs
// without a branch on what moves. UnmakeMove leaves alone what the record restores: castling rights, Fifty,
// the piece-square sums, HashKey and the signature.

namespace {

// Adds (sign 1) or removes (sign -1) a man's entries in the Black-positive sums.
template <int side>
inline void AddPsq(const PsqEntry& entry, int sign) {
    const int factor = side == BLACK ? sign : -sign;
    board.PsqOpening = static_cast<int16_t>(board.PsqOpening + factor * entry.Opening);
    board.PsqEnding = static_cast<int16_t>(board.PsqEnding + factor * entry.Ending);
}

template <int side, unsigned piece>
inline void MovePsq(int from, int to) {
    const PsqEntry* table = &PsqTable[PsqIndex(piece, side, 0)];
    AddPsq<side>({static_cast<int16_t>(table[to].Opening - table[from].Opening),
                  static_cast<int16_t>(table[to].Ending - table[from].Ending)},
                 1);
}

template <unsigned piece>
inline void ToggleSliders(Bitboard squares) {
    if constexpr (IsStraightSlider(piece)) board.StraightSliders ^= squares;
    if constexpr (IsDiagonalSlider(piece)) board.DiagonalSliders ^= squares;
}

// The counts and sums of one man more (sign 1) or less (sign -1), except the signature.
template <int side, unsigned piece>
inline void CountMan(int sign) {
    board.PieceNumber[piece][side] += sign;
    if constexpr (piece != KING) {
        board.Material[side] += sign * PieceValue[piece];
        board.PieceMaterial[side] += sign * PieceUnits[piece];
    }
    if constexpr (piece == KNIGHT || piece == BISHOP) board.MinorCount[side] += sign;
    if constexpr (piece == ROOK) board.MajorCount[side] += sign;
    if constexpr (piece == QUEEN) board.MajorCount[side] += sign * 2;
}

// What a captured man leaves behind besides its square and line occupancy: takes it off (sign -1) or puts it
// back (sign 1). Keys, sums, rights and signature are only taken, never put back: the record restores them.
template <int side, unsigned piece, int sign>
inline void CaptureMan(int square) {
    const Bitboard bit = SquareBit(square);
    CountMan<side, piece>(sign);
    board.Pieces[piece][side] ^= bit;
    ToggleSliders<piece>(bit);
    const uint64_t key = PieceKeys[side][piece][square];
    if constexpr (piece == PAWN) board.PawnHashKey ^= key;
    if constexpr (sign < 0) {
        board.HashKey ^= key;
        AddPsq<side>(PsqTable[PsqIndex(piece, side, square)], -1);
        if constexpr (piece == ROOK) board.CastlingFlags &= CastleMask[square];
        if (board.MaterialSignature != NO_SIGNATURE) {
            board.MaterialSignature -= SignatureWeight[piece][side];
        } else if (piece != PAWN && board.PieceNumber[piece][side] == 2) {
            ComputeMaterialSignature();
        }
    }
}

template <int side, int sign>
inline void CaptureManOf(unsigned piece, int square) {
    switch (piece) {
        case PAWN:
            return CaptureMan<side, PAWN, sign>(square);
        case KNIGHT:
            return CaptureMan<side, KNIGHT, sign>(square);
        case BISHOP:
            return CaptureMan<side, BISHOP, sign>(square);
        case ROOK:
            return CaptureMan<side, ROOK, sign>(square);
        case QUEEN:
            return CaptureMan<side, QUEEN, sign>(square);
        default:
            assert(false && "only these can be captured");
    }
}

// The rook's part of castling, there and back. Its key and sums are only moved there.
template <int side, int from, int to, bool isMake>
[[gnu::noinline]] void MoveCastlingRook() {
    constexpr Bitboard SQUARES = SquareBit(from) | SquareBit(to);
    board.Occupied[side] ^= SQUARES;
    board.Pieces[ROOK][side] ^= SQUARES;
    board.StraightSliders ^= SQUARES;
    constexpr int OLD = isMake ? from : to, NEW = isMake ? to : from;
    board.PieceOn[OLD] = EMPTY;
    board.PieceOn[NEW] = ROOK;
    ClearOccupancy(OLD);
    SetOccupancy(NEW);
    if constexpr (isMake) {
        board.HashKey ^= PieceKeys[side][ROOK][from] ^ PieceKeys[side][ROOK][to];
        MovePsq<side, ROOK>(from, to);
    }
}

template <int side, bool isMake>
inline void MoveCastlingRookOf(int kingFrom, int kingTo) {
    constexpr int HOME = side == WHITE ? E1 : E8;
    if (kingFrom != HOME) return;
    if (kingTo == HOME + 2) MoveCastlingRook<side, HOME + 3, HOME + 1, isMake>();
    if (kingTo == HOME - 2) MoveCastlingRook<side, HOME - 4, HOME - 1, isMake>();
}

// Turns the pawn that has arrived on the square into a piece.
template <int side, unsigned piece>
[[gnu::noinline]] void Promote(int square) {
    const Bitboard bit = SquareBit(square);
    board.Pieces[PAWN][side] ^= bit;
    board.Pieces[piece][side] ^= bit;
    ToggleSliders<piece>(bit);
    board.PieceOn[square] = piece;
    CountMan<side, piece>(1);
    board.Material[side] -= PieceValue[PAWN];
    board.HashKey ^= PieceKeys[side][PAWN][square] ^ PieceKeys[side][piece][square];
    AddPsq<side>(PsqTable[PsqIndex(PAWN, side, square)], -1);
    AddPsq<side>(PsqTable[PsqIndex(piece, side, square)], 1);
    if (board.MaterialSignature == NO_SIGNATURE || board.PieceNumber[piece][side] >= 3) {
        board.MaterialSignature = NO_SIGNATURE;
    } else {
        board.MaterialSignature += SignatureWeight[piece][side] - SignatureWeight[PAWN][side];
    }
}

// Turns the piece on the square back into the pawn that it was.
template <int side, unsigned piece>
[[gnu::noinline]] void Demote(int square) {
    const Bitboard bit = SquareBit(square);
    board.Pieces[PAWN][side] ^= bit;
    board.Pieces[piece][side] ^= bit;
    ToggleSliders<piece>(bit);
    CountMan<side, piece>(-1);
    board.Material[side] += PieceValue[PAWN];
}

// Takes the pawn that was captured en passant off its square or puts it back.
template <int side, int sign>
[[gnu::noinline]] void CaptureEnPassant(int square) {
    board.Occupied[side] ^= SquareBit(square);
    if constexpr (sign < 0) {
        board.PieceCount -= 1;
        board.PieceOn[square] = EMPTY;
        ClearOccupancy(square);
    } else {
        board.PieceCount += 1;
        board.PieceOn[square] = PAWN;
        SetOccupancy(square);
    }
    CaptureMan<side, PAWN, sign>(square);
}

// The pawn's part of a move after it has been put on its arrival square.
template <int side>
inline void MakePawnPart(Move move, int from, int to) {
    board.Fifty = 0;
    board.PawnHashKey ^= PieceKeys[side][PAWN][from];
    const unsigned promotion = MovePromotion(move);
    if (promotion != EMPTY) [[unlikely]] {
        board.PieceNumber[PAWN][side] -= 1;
        switch (promotion) {
            case KNIGHT:
                return Promote<side, KNIGHT>(to);
            case BISHOP:
                return Promote<side, BISHOP>(to);
            case ROOK:
                return Promote<side, ROOK>(to);
            default:
                return Promote<side, QUEEN>(to);
        }
    }
    board.PawnHashKey ^= PieceKeys[side][PAWN][to];
    if (MoveCaptured(move) == EMPTY && ChangesFileParity(move)) [[unlikely]] {
        CaptureEnPassant<side ^ 1, -1>(EnPassantVictim(move));
    }
}

template <int side>
inline void UnmakePawnPart(Move move, int from, int to) {
    board.PawnHashKey ^= PieceKeys[side][PAWN][from];
    const unsigned promotion = MovePromotion(move);
    if (promotion != EMPTY) [[unlikely]] {
        board.PieceNumber[PAWN][side] += 1;
        switch (promotion) {
            case KNIGHT:
                return Demote<side, KNIGHT>(to);
            case BISHOP:
                return Demote<side, BISHOP>(to);
            case ROOK:
                return Demote<side, ROOK>(to);
            default:
                return Demote<side, QUEEN>(to);
        }
    }
    board.PawnHashKey ^= PieceKeys[side][PAWN][to];
    if (MoveCaptured(move) == EMPTY && ChangesFileParity(move)) [[unlikely]] {
        CaptureEnPassant<side ^ 1, 1>(EnPassantVictim(move));
    }
}

template <int side, unsigned piece>
inline void MakePiece(Move move) {
    const int from = MoveFrom(move), to = MoveTo(move);
    const Bitboard squares = SquareBit(from) | SquareBit(to);
    // 1. The man goes over.
    ToggleSliders<piece>(squares);
    board.Occupied[side] ^= squares;
    board.Pieces[piece][side] ^= squares;
    board.HashKey ^= PieceKeys[side][piece][from] ^ PieceKeys[side][piece][to];
    board.PieceOn[from] = EMPTY;
    board.PieceOn[to] = piece;
    ClearOccupancy(from);
    MovePsq<side, piece>(from, to);
    // 2. What it takes. The arrival square of a capture is occupied already.
    const unsigned captured = MoveCaptured(move);
    if (captured != EMPTY) {
        board.PieceCount -= 1;
        board.Fifty = 0;
        board.Occupied[side ^ 1] ^= SquareBit(to);
        CaptureManOf<side ^ 1, -1>(captured, to);
    } else {
        SetOccupancy(to);
    }
    // 3. What only this kind of man does.
    if constexpr (piece == KING) {
        board.KingSquare[side] = to;
        board.CastlingFlags &= CastleMask[from];
        MoveCastlingRookOf<side, true>(from, to);
    }
    if constexpr (piece == PAWN) MakePawnPart<side>(move, from, to);
    if constexpr (piece == ROOK) board.CastlingFlags &= CastleMask[from];
}

template <int side, unsigned piece>
inline void UnmakePiece(Move move) {
    const int from = MoveFrom(move), to = MoveTo(move);
    const Bitboard squares = SquareBit(from) | SquareBit(to);
    if constexpr (piece == PAWN) UnmakePawnPart<side>(move, from, to);
    if constexpr (piece == KING) {
        board.KingSquare[side] = from;
        MoveCastlingRookOf<side, false>(from, to);
    }
    ToggleSliders<piece>(squares);
    board.Occupied[side] ^= squares;
    board.Pieces[piece][side] ^= squares;
    board.PieceOn[from] = piece;
    SetOccupancy(from);
    const unsigned captured = MoveCaptured(move);
    board.PieceOn[to] = captured;
    if (captured != EMPTY) {
        board.PieceCount += 1;
        board.Occupied[side ^ 1] ^= SquareBit(to);
        CaptureManOf<side ^ 1, 1>(captured, to);
    } else {
        ClearOccupancy(to);
    }
}

inline void SaveRecord() {
    HistoryRecord& record = History[HistoryLength];
    record.HashKey = board.HashKey;
    record.Fifty = board.Fifty;
    record.CastlingFlags = board.CastlingFlags;
    record.MaterialSignature = board.MaterialSignature;
    record.PsqOpening = board.PsqOpening;
    record.PsqEnding = board.PsqEnding;
}

inline void RestoreRecord(const HistoryRecord& record) {
    board.HashKey = record.HashKey;
    board.Fifty = record.Fifty;
    board.CastlingFlags = record.CastlingFlags;
    board.MaterialSignature = record.MaterialSignature;
    board.PsqOpening = record.PsqOpening;
    board.PsqEnding = record.PsqEnding;
}

}  // namespace

template <int side>
void MakeMoveOf(Move move, int save) {
    assert(HistoryLength < HISTORY_SIZE);
    assert(board.SideToMove == side);
    if (save) SaveRecord();
    board.Fifty += 1;
    switch (MovePiece(move)) {
        case KING:
            MakePiece<side, KING>(move);
            break;
        case KNIGHT:
            MakePiece<side, KNIGHT>(move);
            break;
        case PAWN:
            MakePiece<side, PAWN>(move);
            break;
        case ROOK:
            MakePiece<side, ROOK>(move);
            break;
        case BISHOP:
            MakePiece<side, BISHOP>(move);
            break;
        case QUEEN:
            MakePiece<side, QUEEN>(move);
            break;
        default:
            assert(false && "a move has a moving piece");
    }
    History[HistoryLength].Move = move;
    HistoryLength += 1;
    board.SideToMove = side ^ 1;
}

template <int side>
void UnmakeMoveOf() {
    assert(HistoryLength > 0);
    assert(board.SideToMove == (side ^ 1));
    HistoryLength -= 1;
    const HistoryRecord& record = History[HistoryLength];
    const Move move = record.Move;
    board.SideToMove = side;
    switch (MovePiece(move)) {
        case KING:
            UnmakePiece<side, KING>(move);
            break;
        case KNIGHT:
            UnmakePiece<side, KNIGHT>(move);
            break;
        case PAWN:
            UnmakePiece<side, PAWN>(move);
            break;
        case ROOK:
            UnmakePiece<side, ROOK>(move);
            break;
        case BISHOP:
            UnmakePiece<side, BISHOP>(move);
            break;
        case QUEEN:
            UnmakePiece<side, QUEEN>(move);
            break;
        default:
            assert(false && "a null move is taken back by UnmakeNullMove");
    }
    RestoreRecord(record);
}

template void MakeMoveOf<WHITE>(Move, int);
template void MakeMoveOf<BLACK>(Move, int);
template void UnmakeMoveOf<WHITE>();
template void UnmakeMoveOf<BLACK>();

void MakeMove(Move move, int save) {
    if (board.SideToMove == WHITE) {
        MakeMoveOf<WHITE>(move, save);
    } else {
        MakeMoveOf<BLACK>(move, save);
    }
}

void UnmakeMove() {
    if (board.SideToMove == BLACK) {
        UnmakeMoveOf<WHITE>();
    } else {
        UnmakeMoveOf<BLACK>();
    }
}

bool TakeBackMove() {
    const Move last = LastMove();
    if (HistoryLength == 0 || last == NO_MOVE || board.PieceOn[MoveFrom(last)] != EMPTY) return false;
    const bool isBlacks = (board.Occupied[BLACK] & SquareBit(MoveTo(last))) != 0;
    board.SideToMove = isBlacks ? WHITE : BLACK;
    UnmakeMove();
    return true;
}

void MakeNullMove() {
    assert(HistoryLength < HISTORY_SIZE);
    SaveRecord();
    History[HistoryLength].Move = NO_MOVE;
    HistoryLength += 1;
    board.SideToMove ^= 1;
}

void UnmakeNullMove() {
    HistoryLength -= 1;
    board.SideToMove ^= 1;
}
