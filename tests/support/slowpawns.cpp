#include "tests/support/slowpawns.h"

#include <algorithm>
#include <cstdlib>

namespace {

// The men as a side sees them: ranks 0..7 from its own back rank. Beyond the edge stands nobody.
struct View {
    const SlowPosition& Position;
    int Side;

    bool Has(int file, int rank, int side, unsigned piece) const {
        if (file < 0 || file > 7 || rank < 0 || rank > 7) return false;
        return Position.Men[(Side == WHITE ? rank : 7 - rank) * 8 + file] == SlowPosition::Man{piece, side};
    }
    bool Own(int file, int rank) const { return Has(file, rank, Side, PAWN); }
    bool Enemy(int file, int rank) const { return Has(file, rank, 1 - Side, PAWN); }
    bool Any(int file, int rank) const { return Own(file, rank) || Enemy(file, rank); }

    // Pawns of a file, or of both its neighbours, from one rank to another.
    int OwnIn(int file, int first, int last) const {
        int count = 0;
        for (int rank = first; rank <= last; ++rank) count += Own(file, rank);
        return count;
    }
    int EnemiesIn(int file, int first, int last) const {
        return View{Position, 1 - Side}.OwnIn(file, 7 - last, 7 - first);
    }
    int OwnBeside(int file, int first, int last) const {
        return OwnIn(file - 1, first, last) + OwnIn(file + 1, first, last);
    }
    int EnemiesBeside(int file, int first, int last) const {
        return EnemiesIn(file - 1, first, last) + EnemiesIn(file + 1, first, last);
    }
};

// By distance from the edge of the board to the d- and e-file.
constexpr int DOUBLED[2][4] = {{10, 10, 10, 12}, {18, 18, 18, 20}};
constexpr int ISOLATED[4] = {8, 9, 10, 12}, ISOLATED_OPEN[4] = {18, 19, 20, 22};
constexpr int BACKWARD[4] = {6, 7, 8, 10}, BACKWARD_OPEN[4] = {12, 14, 16, 18},
              BACKWARD_ENDING[4] = {8, 9, 10, 12};
constexpr int CONNECTED[8][4] = {{0, 0, 0, 0}, {12, 18, 21, 24}, {8, 12, 14, 16},
                                 {4, 6, 7, 8}, {2, 3, 4, 5},     {1, 2, 2, 2}};
constexpr int CANDIDATE_RANK[8] = {0, 0, 0, 26, 77, 154, 256, 0};
constexpr int LEVER[8] = {0, 0, 0, 0, 0, 16, 24, 0};

int EdgeDistance(int file) {
    return std::min(file, 7 - file);
}

bool IsBackward(const View& view, int file, int rank) {
    const auto isSafe = [&](int ahead) {
        return view.EnemiesBeside(file, rank + ahead + 1, rank + ahead + 1) == 0;
    };
    if (view.OwnBeside(file, 0, 7) == 0 || view.OwnBeside(file, 0, rank) > 0) return false;
    if (!isSafe(0) || view.Any(file, rank + 1) || !isSafe(1)) return true;
    if (view.OwnBeside(file, rank + 1, rank + 1) > 0) return false;
    return !(rank == 1 && view.OwnBeside(file, 3, 3) > 0 && !view.Any(file, 3) && isSafe(2));
}

// Whether the own pawn behind on a neighbouring file will lever away the pawn that blocks this one.
bool HasLever(const View& view, int file, int rank) {
    if (!view.Enemy(file, rank + 1)) return false;
    if (view.EnemiesIn(file, rank + 2, 7) + view.EnemiesBeside(file, rank + 2, 7) > 0) return false;
    for (const int wing : {1, -1}) {
        if (view.Own(file + wing, rank - 1) && view.EnemiesIn(file + wing, rank, 7) == 0 &&
            view.EnemiesIn(file + 2 * wing, rank, 7) == 0)
            return true;
    }
    return false;
}

void TellPawn(const View& view, int file, int rank, SlowPawns& told) {
    const int side = view.Side, edge = EdgeDistance(file), bit = 1 << file;
    int opening = 0, ending = 0;
    told.Files[side] |= bit;
    if (view.OwnBeside(file, rank - 1, rank) > 0) {
        // White looks one entry too far: past the end of the row it is the first of the next.
        const int entry = side == BLACK ? (7 - rank) * 8 + file : 64 - (rank * 8 + file);
        opening += CONNECTED[entry / 8][EdgeDistance(entry % 8)];
        ending += CONNECTED[entry / 8][EdgeDistance(entry % 8)];
    }
    if (view.OwnIn(file, 0, rank - 1) > 0) {
        opening -= DOUBLED[0][edge];
        ending -= DOUBLED[1][edge];
    }
    const bool isOpen = view.OwnIn(file, rank + 1, 7) + view.EnemiesIn(file, rank + 1, 7) == 0;
    if (view.OwnBeside(file, 0, 7) == 0) {
        opening -= isOpen ? ISOLATED_OPEN[edge] : ISOLATED[edge];
        ending -= ISOLATED_OPEN[edge];
        if (isOpen) told.Weak[side] |= bit;
    }
    if (IsBackward(view, file, rank)) {
        opening -= isOpen ? BACKWARD_OPEN[edge] : BACKWARD[edge];
        ending -= BACKWARD_ENDING[edge];
        if (isOpen) told.Weak[side] |= bit;
    }
    if (isOpen && view.EnemiesBeside(file, rank + 1, 7) == 0) {
        told.Passed[side] |= bit;
    } else if (isOpen && view.OwnBeside(file, 0, rank) >= view.EnemiesBeside(file, rank + 1, 7) &&
               view.OwnBeside(file, rank - 1, rank - 1) >= view.EnemiesBeside(file, rank + 1, rank + 1)) {
        told.Candidates[side] |= bit;
        opening += 5 + (50 * CANDIDATE_RANK[rank] + 128) / 256;
        ending += 10 + (100 * CANDIDATE_RANK[rank] + 128) / 256;
    }
    if (HasLever(view, file, rank)) ending += LEVER[rank];
    told.Opening += side == BLACK ? opening : -opening;
    told.Ending += side == BLACK ? ending : -ending;
}

// Defects of both sides on the wing whose files these are, outer file first.
void TellDefects(const SlowPosition& position, int wing, const int (&files)[3], SlowPawns& told) {
    int defects[2]{}, halfOpen[2]{}, open = 0;
    for (int i = 0; i < 3; ++i) {
        const int file = files[i];
        if (View{position, WHITE}.OwnIn(file, 0, 7) + View{position, BLACK}.OwnIn(file, 0, 7) == 0) {
            ++open;
            continue;
        }
        // White first: what it finds on the inner file lets Black look there, not the other way round.
        for (const int side : {WHITE, BLACK}) {
            const View view{position, side};
            if (i == 2 && defects[side] + open + halfOpen[WHITE] + halfOpen[BLACK] == 0) continue;
            if (view.OwnIn(file, 0, 7) == 0) {
                ++halfOpen[side];
                if (i < 2) ++defects[side];
            } else if (!view.Own(file, 1)) {
                defects[side] += 1 + !view.Own(file, 2) + (i == 1);
            }
        }
    }
    constexpr int HALF_OPEN[4] = {0, 3, 7, 9}, OPEN[4] = {0, 8, 13, 16};
    for (const int side : {WHITE, BLACK}) {
        const View view{position, side};
        const bool hasPair = view.Own(files[1], 2) && (view.Own(files[0], 2) || view.Own(files[2], 2));
        if (defects[side] > 0 && hasPair) --defects[side];
        told.Defects[side][wing] =
            defects[side] + HALF_OPEN[halfOpen[1 - side]] / 2 + HALF_OPEN[halfOpen[side]] + OPEN[open];
    }
}

// What a file near the king adds to the index.
int FileWorth(const View& view, int file, int openWorth) {
    if (view.OwnIn(file, 0, 7) > 0) return view.Own(file, 1) ? 0 : view.Own(file, 2) ? 1 : 2;
    return view.EnemiesIn(file, 0, 7) > 0 ? openWorth / 2 : openWorth;
}

int CentreWorth(const View& view, int file) {
    return FileWorth(view, file - 1, 6) + FileWorth(view, file, 8) + FileWorth(view, file + 1, 6);
}

}  // namespace

SlowPawns TellPawns(const SlowPosition& position) {
    SlowPawns told;
    for (const int side : {WHITE, BLACK}) {
        const View view{position, side};
        int width = 0;
        for (int file = 0; file < 8; ++file) {
            for (int rank = 0; rank < 8; ++rank) {
                if (view.Own(file, rank)) TellPawn(view, file, rank, told);
            }
        }
        for (int low = 0; low < 8; ++low) {
            for (int high = low; high < 8; ++high) {
                if ((told.Files[side] >> low & 1) && (told.Files[side] >> high & 1))
                    width = std::max(width, high - low);
            }
        }
        told.Ending += (side == BLACK ? 6 : -6) * width;
    }
    TellDefects(position, 0, {7, 6, 5}, told);
    TellDefects(position, 1, {0, 1, 2}, told);
    return told;
}

SlowShelter TellShelter(const SlowPosition& position, int side) {
    constexpr int BASE[3][4] = {{1, 0, 2, 3}, {1, 1, 2, 3}, {3, 3, 3, 3}};
    constexpr int VALUE[24] = {0,   4,   15,  24,  36,  42,  54,  72,  81,  90,  99,  108,
                               117, 126, 135, 144, 148, 152, 156, 160, 164, 168, 172, 175};
    const View view{position, side};
    const int king = position.KingOf(side), file = king % 8, rank = side == WHITE ? king / 8 : 7 - king / 8;
    const auto& defects = TellPawns(position).Defects[side];
    const bool enemyHasQueen =
        std::count(position.Men.begin(), position.Men.end(), SlowPosition::Man{QUEEN, 1 - side}) > 0;
    const unsigned rights = position.Castling >> (side == WHITE ? 0 : 2) & 3;
    int index = rank < 3 ? BASE[rank][EdgeDistance(file)] : std::min(rank + 1, 6), queenLeft = 0;
    if (rights != 0) {
        if (!view.Has(3, 0, side, QUEEN)) queenLeft = -12;
        const int centre = CentreWorth(view, 4);
        int wing = centre;
        if ((rights & 1) != 0) wing = std::min(wing, defects[0]);
        if ((rights & 2) != 0) wing = std::min(wing, defects[1]);
        index += centre / 2 + wing / 2;
    } else {
        const int knightFile = file < 4 ? 1 : 6, inner = file < 4 ? 2 : 5;
        index += defects[file < 4 ? 1 : 0];
        const bool hasIntruder = view.Enemy(inner, 2) || view.Has(inner, 2, 1 - side, BISHOP);
        if (!view.Own(knightFile, 1) && hasIntruder && enemyHasQueen) index += 3;
        // The file to the right of the king counts one more than it should.
        if (file == 3 || file == 4) index += CentreWorth(view, file) + 1;
    }
    if (!enemyHasQueen) index /= 2;
    return {index, index < 24 ? VALUE[index] : 180, queenLeft};
}
