#include "eval/shelter.h"

#include <algorithm>

#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

// By king square from White's side. Black reads it rotated, 63 - k, rather than mirrored; deliberate.
constexpr int KingSquareShelter[64] = {
    1, 0, 2, 3, 3, 2, 0, 1,  //
    1, 1, 2, 3, 3, 2, 1, 1,  //
    3, 3, 3, 3, 3, 3, 3, 3,  //
    4, 4, 4, 4, 4, 4, 4, 4,  //
    5, 5, 5, 5, 5, 5, 5, 5,  //
    6, 6, 6, 6, 6, 6, 6, 6,  //
    6, 6, 6, 6, 6, 6, 6, 6,  //
    6, 6, 6, 6, 6, 6, 6, 6,
};

constexpr int SHELTER_VALUES = 25;
// Centipawns by shelter index; the last entry stands for all higher ones.
constexpr int ShelterValue[SHELTER_VALUES] = {0,   4,   15,  24,  36,  42,  54,  72,  81,  90,  99,  108, 117,
                                              126, 135, 144, 148, 152, 156, 160, 164, 168, 172, 175, 180};

template <int side>
struct Shelter {
    static constexpr int enemy = 1 - side;
    static constexpr unsigned SHORT = ShortRight(side), LONG = LongRight(side);
    static constexpr int mirror = side == WHITE ? 0 : 56;  // turns a white square into the side's own

    static int KingSideDefects() {
        return side == WHITE ? pawn_cache.white_defects_k : pawn_cache.black_defects_k;
    }
    static int QueenSideDefects() {
        return side == WHITE ? pawn_cache.white_defects_q : pawn_cache.black_defects_q;
    }
    static bool HasEnemyQueen() { return board.PieceNumber[QUEEN][enemy] > 0; }

    // What a file adds to the index.
    static int FileWeakness(int file, int openWeight) {
        const Bitboard line = FileBits(file);
        const Bitboard own = board.Pieces[PAWN][side] & line;
        if (own == 0) return (board.Pieces[PAWN][enemy] & line) == 0 ? openWeight : openWeight >> 1;
        if ((own & RelativeRankBits(side, 1)) != 0) return 0;
        return (own & RelativeRankBits(side, 2)) != 0 ? 1 : 2;
    }

    static int CentreWeakness(int file) {
        return FileWeakness(file - 1, OpenCentreFile) + FileWeakness(file, OpenKingFile) +
               FileWeakness(file + 1, OpenCentreFile);
    }

    // The king can still choose a wing.
    static int UncastledIndex() {
        const int centre = CentreWeakness(4);
        int wing = centre;
        if ((board.CastlingFlags & LONG) != 0) wing = std::min(wing, QueenSideDefects());
        if ((board.CastlingFlags & SHORT) != 0) wing = std::min(wing, KingSideDefects());
        wing = std::max(wing, 0);
        return (centre >> 1) + (wing >> 1);
    }

    // A wing whose knight's pawn is gone, with an enemy pawn or bishop on the square diagonally in front of
    // its place. Squares are White's.
    static int FianchettoWeakness(int pawnSquare, int hole) {
        const Bitboard intruders = board.Pieces[PAWN][enemy] | board.Pieces[BISHOP][enemy];
        const bool isOpen = (board.Pieces[PAWN][side] & SquareBit(pawnSquare ^ mirror)) == 0;
        return isOpen && (intruders & SquareBit(hole ^ mirror)) != 0 && HasEnemyQueen() ? FianchettoHole : 0;
    }

    static int SettledIndex(int kingFile) {
        constexpr int B2 = 9, C3 = 18, G2 = 14, F3 = 21;
        const bool isQueenSide = kingFile < 4;
        int index = isQueenSide ? QueenSideDefects() + FianchettoWeakness(B2, C3)
                                : KingSideDefects() + FianchettoWeakness(G2, F3);
        // The file to the king's right always counts one more; deliberate.
        if (kingFile == 3 || kingFile == 4) index += CentreWeakness(kingFile) + 1;
        return index;
    }

    static int Evaluate() {
        const int king = static_cast<int>(board.KingSquare[side]);
        int index = KingSquareShelter[side == WHITE ? king : 63 - king], penalty = 0;
        if ((board.CastlingFlags & (SHORT | LONG)) != 0) {
            const Bitboard home = SquareBit(D1 ^ mirror);
            if ((board.Pieces[QUEEN][side] & home) == 0) penalty = QueenLeftHomePenalty;
            index += UncastledIndex();
        } else {
            index += SettledIndex(FileOf(king));
        }
        if (!HasEnemyQueen()) index = index * NoQueenShelterScale >> 8;
        eval_info.shelter_penalty[side] = index;
        const int factor = side == EngineSide ? Cowardice.Scaled : Aggressivity.Scaled;
        return -penalty - ShelterValueOf(index) * factor / 100;
    }
};

}  // namespace

int ShelterValueOf(int index) {
    return ShelterValue[std::clamp(index, 0, SHELTER_VALUES - 1)];
}

int EvaluateShelter(int side) {
    return side == WHITE ? Shelter<WHITE>::Evaluate() : Shelter<BLACK>::Evaluate();
}
