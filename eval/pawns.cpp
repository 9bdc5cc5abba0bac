#include "eval/pawns.h"

#include <algorithm>

#include "core/board.h"
#include "eval/evaluate.h"
#include "eval/pawnhash.h"
#include "eval/pawnsets.h"
#include "eval/weights.h"

namespace {

constexpr int PAWN_SPAN_WEIGHT = 6;

// A pawn with what its rules ask about. Everything is told as the pawn's own side sees it.
template <int side>
struct PawnView {
    static constexpr int enemy = 1 - side;

    explicit PawnView(int square) : Square(square), Bit(SquareBit(square)) {
        OwnBeside = Own & Neighbours(FileBits(FileOf(square)));
        Ahead = FileAhead<side>(square);
        AheadBeside = Neighbours(Ahead);
        IsOpen = ((Own | Enemy) & Ahead) == 0;
    }

    const int Square;
    const Bitboard Bit;
    const Bitboard Own = board.Pieces[PAWN][side];
    const Bitboard Enemy = board.Pieces[PAWN][enemy];
    Bitboard OwnBeside;    // own pawns on the adjacent files
    Bitboard Ahead;        // the squares in front on its file
    Bitboard AheadBeside;  // those level with them on the adjacent files
    bool IsOpen;           // no pawn of either side in front

    int File() const { return FileOf(Square); }
    int Rank() const { return RelativeRank(side, Square); }
    // The own pawns that defend it and the enemy pawns that attack it.
    Bitboard Defenders() const { return PawnAttacksOf<enemy>(Bit) & Own; }
    Bitboard Attackers() const { return PawnAttacksOf<side>(Bit) & Enemy; }
};

// Tables by file are symmetric: they hold the files a to d.
int ByFile(const Ints<4>& table, int file) {
    return table[static_cast<size_t>(std::min(file, 7 - file))];
}

// The table is told from Black's side. White reads entry 64 - s rather than the mirrored 63 - s: deliberate.
template <int side>
int ConnectedBonus(int square) {
    const int entry = side == BLACK ? square : 64 - square;
    const int rank = RankOf(entry), file = FileOf(entry);
    if (rank < 1 || rank > 5) return 0;
    return PawnConnected[static_cast<size_t>((rank - 1) * 4 + std::min(file, 7 - file))];
}

// Whether nothing keeps a pawn from stepping onto the squares: no pawn on them, no enemy pawn that attacks
// them or the pawn itself.
template <int side>
bool CanStepOnto(const PawnView<side>& pawn, Bitboard squares) {
    const Bitboard attacked = PawnAttacksOf<1 - side>(pawn.Enemy);
    return ((pawn.Own | pawn.Enemy) & squares) == 0 && (attacked & (squares | pawn.Bit)) == 0;
}

// Of a pawn that has own pawns on the adjacent files.
template <int side>
bool IsBackward(const PawnView<side>& pawn) {
    if ((pawn.OwnBeside & ~pawn.AheadBeside) != 0) return false;
    const Bitboard front = ShiftAhead<side>(pawn.Bit), second = ShiftAhead<side>(front);
    if ((Neighbours(front) & pawn.Own) != 0 && CanStepOnto(pawn, front)) return false;
    const bool canJoin = pawn.Rank() == 1 && (Neighbours(second) & pawn.Own) != 0;
    return !(canJoin && CanStepOnto(pawn, front | second));
}

template <int side>
Score WeakPawn(const PawnView<side>& pawn, uint8_t& weakFiles) {
    const int file = pawn.File();
    const bool isIsolated = pawn.OwnBeside == 0;
    if (!isIsolated && !IsBackward(pawn)) return {0, 0};
    if (pawn.IsOpen) weakFiles |= static_cast<uint8_t>(1 << file);
    if (isIsolated) {
        const Ints<4>& opening = pawn.IsOpen ? PawnIsolatedOpenOpening : PawnIsolatedOpening;
        return {-ByFile(opening, file), -ByFile(PawnIsolatedEnding, file)};
    }
    const Ints<4>& opening = pawn.IsOpen ? PawnBackwardOpenOpening : PawnBackwardOpening;
    return {-ByFile(opening, file), -ByFile(PawnBackwardEnding, file)};
}

// Of an open pawn with enemy pawns that can still stop it.
template <int side>
bool IsCandidate(const PawnView<side>& pawn) {
    const int helpers = CountSquares(pawn.OwnBeside & ~pawn.AheadBeside);
    return helpers >= CountSquares(pawn.Enemy & pawn.AheadBeside) &&
           CountSquares(pawn.Defenders()) >= CountSquares(pawn.Attackers());
}

int Interpolate(const Ints<2>& range, int weight) {
    return range[0] + ((range[1] - range[0]) * weight + 128) / 256;
}

Score CandidateBonus(int rank) {
    const int weight = rank >= 3 && rank <= 6 ? CandidateRankWeight[static_cast<size_t>(rank - 3)] : 0;
    return {Interpolate(CandidateOpening, weight), Interpolate(CandidateEnding, weight)};
}

// Whether the own pawn diagonally behind on the side of `shift` can break through to the blocker: no enemy
// pawn ahead of it on its file and on the next one.
template <int side>
bool HasLever(const PawnView<side>& pawn, Bitboard (*shift)(Bitboard)) {
    const Bitboard supporter = shift(ShiftAhead<1 - side>(pawn.Bit)) & pawn.Own;
    if (supporter == 0) return false;
    const Bitboard ahead = FileAhead<side>(LowestSquare(supporter));
    return (pawn.Enemy & (ahead | shift(ahead))) == 0;
}

template <int side>
int LeverBonus(const PawnView<side>& pawn) {
    const int rank = pawn.Rank();
    const Bitboard front = ShiftAhead<side>(pawn.Bit);
    // A pawn on the seventh rank has no pawn in front of it, so that its bonus never occurs; deliberate.
    if (rank < 5 || (pawn.Enemy & front) == 0) return 0;
    const Bitboard beyond = ShiftAhead<side>(pawn.Ahead);
    if ((pawn.Enemy & (beyond | Neighbours(beyond))) != 0) return 0;
    const bool hasLever = HasLever(pawn, ShiftToH) || HasLever(pawn, ShiftToA);
    return hasLever ? PawnLeverBonus[static_cast<size_t>(rank - 5)] : 0;
}

// The worth of a pawn to its side; marks its file in the sets that it belongs to.
template <int side>
Score EvaluatePawn(int square) {
    const PawnView<side> pawn(square);
    const auto file = static_cast<uint8_t>(1 << pawn.File());
    pawn_cache.PawnFiles(side) |= file;
    Score score = WeakPawn(pawn, pawn_cache.WeakFiles(side));
    const bool hasNeighbour = (Neighbours(pawn.Bit) & pawn.Own) != 0 || pawn.Defenders() != 0;
    if (hasNeighbour) score += Score{1, 1} * ConnectedBonus<side>(square);
    if ((FileAhead<1 - side>(square) & pawn.Own) != 0)
        score -= {ByFile(PawnDoubledOpening, pawn.File()), ByFile(PawnDoubledEnding, pawn.File())};
    if (pawn.IsOpen && (pawn.AheadBeside & pawn.Enemy) == 0) {
        pawn_cache.PassedVector(side) |= file;
    } else if (pawn.IsOpen && IsCandidate(pawn)) {
        pawn_cache.CandidateFiles(side) |= file;
        score += CandidateBonus(pawn.Rank());
    }
    score.Ending += LeverBonus(pawn);
    return score;
}

template <int side>
Score EvaluatePawns() {
    Score score{0, 0};
    for (Bitboard pawns = board.Pieces[PAWN][side]; pawns != 0;)
        score += EvaluatePawn<side>(PopLowest(pawns));
    return score;
}

int SpanOf(unsigned files) {
    return files == 0 ? 0 : HighestSquare(files) - LowestSquare(files);
}

// Computes `pawn_cache` from the pawns on the board.
void ComputePawnEntry() {
    pawn_cache = PawnEntry{};
    pawn_cache.Key = board.PawnHashKey;
    ComputeShelterDefects();
    Score score = EvaluatePawns<BLACK>();
    score -= EvaluatePawns<WHITE>();
    score.Ending +=
        PAWN_SPAN_WEIGHT * (SpanOf(pawn_cache.PawnFiles(BLACK)) - SpanOf(pawn_cache.PawnFiles(WHITE)));
    pawn_cache.Opening = static_cast<int16_t>(score.Opening);
    pawn_cache.Ending = static_cast<int16_t>(score.Ending);
}

// Makes `pawn_cache` the entry of the pawns on the board.
void ProbePawnHash() {
    if (!HasPawnHash()) {
        ComputePawnEntry();
        return;
    }
    if (pawn_cache.Key == board.PawnHashKey) return;
    PawnEntry& slot = PawnHashSlot(board.PawnHashKey);
    if (slot.Key == board.PawnHashKey) {
        pawn_cache = slot;
        return;
    }
    ComputePawnEntry();
    slot = pawn_cache;
}

}  // namespace

void EvaluatePawnStructure(int* opening, int* ending) {
    ProbePawnHash();
    *opening += pawn_cache.Opening;
    *ending += pawn_cache.Ending;
    for (const int side : {WHITE, BLACK})
        eval_info.passed_pawns[side] =
            SquaresOfFiles(pawn_cache.PassedVector(side)) & board.Pieces[PAWN][side];
}
