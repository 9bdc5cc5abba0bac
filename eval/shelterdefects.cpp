#include "core/board.h"
#include "eval/pawnhash.h"
#include "eval/pawns.h"
#include "eval/pawnsets.h"

// The holes in the pawn walls of the two wings, where a king may come to stand.

namespace {

constexpr uint8_t HalfOpenValue[] = {0, 3, 7, 9};
constexpr uint8_t OpenFileValue[] = {0, 8, 13, 16};

constexpr int KING_WING[] = {7, 6, 5};  // from the outer file inwards
constexpr int QUEEN_WING[] = {0, 1, 2};

struct Wing {
    int Open = 0;              // files without any pawn
    int HalfOpen[2] = {0, 0};  // files with pawns, but none of the side
    int Defects[2] = {0, 0};
};

Bitboard PawnsOn(int side, int file) {
    return board.Pieces[PAWN][side] & FileBits(file);
}

// What a side lacks on a file where it has a pawn. `position` is the file's place in the wing.
int FileDefects(int side, int file, int position) {
    const Bitboard pawns = PawnsOn(side, file);
    if ((pawns & RelativeRankBits(side, 1)) != 0) return 0;
    return 1 + ((pawns & RelativeRankBits(side, 2)) == 0) + (position == 1);
}

void ExamineFile(Wing& wing, int side, int file, int position) {
    if (PawnsOn(side, file) != 0) {
        wing.Defects[side] += FileDefects(side, file, position);
    } else {
        ++wing.HalfOpen[side];
        if (position < 2) ++wing.Defects[side];
    }
}

Wing ExamineWing(const int (&files)[3]) {
    Wing wing;
    for (int position = 0; position < 3; ++position) {
        const int file = files[position];
        if ((PawnsOn(WHITE, file) | PawnsOn(BLACK, file)) == 0) {
            ++wing.Open;
            continue;
        }
        // White comes first: a file that becomes half-open for it makes the third file count for Black;
        // deliberate.
        for (const int side : {WHITE, BLACK}) {
            const bool isDisturbed =
                wing.Defects[side] + wing.Open + wing.HalfOpen[WHITE] + wing.HalfOpen[BLACK] > 0;
            if (position < 2 || isDisturbed) ExamineFile(wing, side, file, position);
        }
    }
    return wing;
}

// Two pawns abreast on the third rank make up for one defect.
int RepairedDefects(int side, const int (&files)[3], int defects) {
    if (defects == 0) return 0;
    const Bitboard third = board.Pieces[PAWN][side] & RelativeRankBits(side, 2);
    const auto has = [third](int file) { return (third & FileBits(file)) != 0; };
    const bool hasPair = has(files[1]) && (has(files[0]) || has(files[2]));
    return defects - hasPair;
}

uint8_t DefectByte(int side, const int (&files)[3]) {
    const Wing wing = ExamineWing(files);
    return static_cast<uint8_t>(RepairedDefects(side, files, wing.Defects[side]) +
                                HalfOpenValue[wing.HalfOpen[ChangeSide(side)]] / 2 +
                                HalfOpenValue[wing.HalfOpen[side]] + OpenFileValue[wing.Open]);
}

}  // namespace

void ComputeShelterDefects() {
    pawn_cache.white_defects_k = DefectByte(WHITE, KING_WING);
    pawn_cache.white_defects_q = DefectByte(WHITE, QUEEN_WING);
    pawn_cache.black_defects_k = DefectByte(BLACK, KING_WING);
    pawn_cache.black_defects_q = DefectByte(BLACK, QUEEN_WING);
}
