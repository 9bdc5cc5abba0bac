#include "egtb/tableindex.h"

#include <algorithm>
#include <array>

namespace {

constexpr Bitboard DIAGONAL = 0x8040201008040201u;  // a1-h8
constexpr int PAWN_PAIRS = 14;                      // two pawns side by side, one of them to be taken

constexpr int CountKings(bool isMirrored) {
    return isMirrored ? 462 : 1806;
}

// The pairs of kings in their order: the king of the side to move in the triangle a1-d1-d4, and the other one
// not above the diagonal if the first stands on it; or, with pawns, the first on the files a to d.
struct KingPairs {
    int Count = 0;
    std::array<std::array<uint8_t, 2>, CountKings(false)> Squares{};
    std::array<std::array<int16_t, 64>, 64> Number{};  // -1 for none

    constexpr explicit KingPairs(bool isMirrored) {
        for (int king = 0; king < 64; ++king) {
            for (int other = 0; other < 64; ++other) {
                Number[king][other] = -1;
                if (Distance(king, other) <= 1 || FileOf(king) > 3) continue;
                const int height = RankOf(king) - FileOf(king);
                const bool isTurned = height > 0 || (height == 0 && RankOf(other) > FileOf(other));
                if (isMirrored && (RankOf(king) > 3 || isTurned)) continue;
                Squares[Count] = {static_cast<uint8_t>(king), static_cast<uint8_t>(other)};
                Number[king][other] = static_cast<int16_t>(Count++);
            }
        }
    }
};
constexpr KingPairs MIRRORED_PAIRS(true), PAWN_KING_PAIRS(false);
static_assert(MIRRORED_PAIRS.Count == CountKings(true) && PAWN_KING_PAIRS.Count == CountKings(false));

const KingPairs& PairsOf(const TableClass& tableClass) {
    return tableClass.HasPawns() ? PAWN_KING_PAIRS : MIRRORED_PAIRS;
}

// Choices of k of n squares.
constexpr int MAX_GROUP = MAX_SIDE_MEN;
using Choices = std::array<std::array<int64_t, MAX_GROUP + 1>, 65>;
constexpr Choices CHOICES = [] {
    Choices choices{};
    for (int n = 0; n <= 64; ++n) {
        choices[n][0] = 1;
        for (int k = 1; k <= MAX_GROUP && n > 0; ++k)
            choices[n][k] = choices[n - 1][k] + choices[n - 1][k - 1];
    }
    return choices;
}();

// The number of a set of men among those that stand on some of the squares: by the highest man first.
int64_t RankMen(Bitboard squares, Bitboard men) {
    int64_t rank = 0;
    for (int k = 1; men != 0; ++k) {
        const Bitboard below = SquareBit(PopLowest(men)) - 1;
        rank += CHOICES[CountSquares(squares & below)][k];
    }
    return rank;
}

int SquareByRank(Bitboard squares, int rank) {
    while (rank-- > 0) squares &= squares - 1;
    return LowestSquare(squares);
}

Bitboard MenByRank(Bitboard squares, int count, int64_t rank) {
    Bitboard men = 0;
    int place = CountSquares(squares) - 1;
    for (int k = count; k > 0; --k) {
        if (k == 1) place = static_cast<int>(rank);
        while (CHOICES[place][k] > rank) --place;
        rank -= CHOICES[place][k];
        men |= SquareBit(SquareByRank(squares, place));
    }
    return men;
}

// From where a man of the side checks a king on the square however the other men stand.
Bitboard UnblockableChecks(unsigned piece, int side, int king) {
    switch (piece) {
        case QUEEN:
            return KingTargets[king];
        case ROOK:
            return KingTargets[king] & StraightRays[king];
        case BISHOP:
            return KingTargets[king] & DiagonalRays[king];
        case KNIGHT:
            return KnightTargets[king];
        default:
            return PawnCaptures[ChangeSide(side)][king];
    }
}

// The squares of a capture en passant: two pawns, and the squares that the double step has passed over.
struct PawnPair {
    int Capturer, Victim;

    // By number: ordered by the capturer's file, then by the victim's.
    PawnPair(int number, int sideToMove) {
        const int rank = sideToMove == WHITE ? 4 : 3, file = (number + 1) / 2;
        Capturer = MakeSquare(file, rank);
        Victim = number % 2 == 0 ? Capturer + 1 : Capturer - 1;
    }
    static int Number(int capturer, int victim) { return 2 * FileOf(capturer) - (victim > capturer ? 0 : 1); }
    Bitboard Squares(int sideToMove) const {
        const int back = sideToMove == WHITE ? 8 : -8;
        return SquareBit(Capturer) | SquareBit(Victim) | SquareBit(Victim + back) |
               SquareBit(Victim + 2 * back);
    }
};

}  // namespace

Bitboard TableIndex::Symmetry::operator()(Bitboard set) const {
    if (Files) set = FlipFiles(set);
    if (Ranks) set = FlipRanks(set);
    return Diagonal ? FlipDiagonal(set) : set;
}

int TableIndex::Symmetry::operator()(int square) const {
    square ^= (Files ? 7 : 0) | (Ranks ? 56 : 0);
    return Diagonal ? FlipDiagonal(square) : square;
}

TableIndex::TableIndex(const TableClass& tableClass, int sideToMove)
    : class_(tableClass), sideToMove_(sideToMove) {
    for (const unsigned piece : TableKinds) AddGroup(sideToMove, piece);
    // The opponent's pawns have the same squares wherever its pieces stand, so they go before them.
    AddGroup(ChangeSide(sideToMove), PAWN);
    for (const unsigned piece : TableKinds) {
        if (piece != PAWN) AddGroup(ChangeSide(sideToMove), piece);
    }
    ordinary_.reserve(CountKings(!tableClass.HasPawns()) + 1);
    CountOffsets(false, &ordinary_);
    if (tableClass.HasEnPassant()) {
        CountOffsets(true, &enPassant_);
    } else {
        enPassant_.assign(1, ordinary_.back());
    }
    TablePosition position;
    for (fileEntries_ = Size(); fileEntries_ > 0 && !PositionAt(fileEntries_ - 1, &position);) --fileEntries_;
}

void TableIndex::AddGroup(int side, unsigned piece) {
    const int count = CountMen(class_.Code[side], piece);
    if (count == 0) return;
    int placed = 0;
    for (int g = 0; g < groupCount_; ++g) placed += groups_[g].Count;
    groups_[groupCount_++] = {side, piece, count, placed};
}

// A pair of pawns is placed before all the groups.
int TableIndex::CountInGroup(const Group& group, const Placing& placing) const {
    return group.Count - (placing.Pair != 0 && group.Piece == PAWN ? 1 : 0);
}

Bitboard TableIndex::SquaresFor(const Group& group, const Placing& placing) const {
    if (group.Side == sideToMove_) {
        if (placing.Pair != 0 && group.Piece == PAWN) return PAWN_RANKS & ~placing.Pair;
        const Bitboard checks = UnblockableChecks(group.Piece, group.Side, placing.OtherKing);
        return (group.Piece == PAWN ? PAWN_RANKS : ~Bitboard{0}) & ~placing.Kings & ~checks;
    }
    if (group.Piece != PAWN) return ~(placing.Kings | placing.Men | placing.Pair);
    const bool isAgainstKing = class_.Code[sideToMove_] == 0;
    return PAWN_RANKS & ~(placing.OwnPawns | placing.Pair | (isAgainstKing ? placing.Kings : 0));
}

// How many squares there are for the group, unless men before it stand on one square.
int TableIndex::CountSquaresFor(const Group& group, const Placing& placing) const {
    const int pair = placing.Pair == 0 ? 0 : 1;
    if (group.Side == sideToMove_) return CountSquares(SquaresFor(group, placing));
    // Four squares belong to the pair of pawns, which are among the men placed before.
    if (group.Piece != PAWN) return 62 - group.Placed - 2 * pair;
    if (class_.Code[sideToMove_] == 0) return CountSquares(PAWN_RANKS & ~placing.Kings);
    return 48 - CountMen(class_.Code[sideToMove_], PAWN) - 3 * pair;
}

int64_t TableIndex::CountPlacings(const Group& group, const Placing& placing) const {
    return CHOICES[CountSquaresFor(group, placing)][CountInGroup(group, placing)];
}

// The first number of every pair of kings, behind the numbers that there are, with or without a pair of
// pawns.
void TableIndex::CountOffsets(bool hasPair, std::vector<int64_t>* offsets) {
    const KingPairs& pairs = PairsOf(class_);
    int64_t next = hasPair ? ordinary_.back() : 0;
    for (int i = 0; i < pairs.Count; ++i) {
        offsets->push_back(next);
        const int king = pairs.Squares[i][0], other = pairs.Squares[i][1];
        const Placing placing{other, SquareBit(king) | SquareBit(other), 0, 0,
                              hasPair ? PawnPair(0, sideToMove_).Squares(sideToMove_) : 0};
        int64_t count = hasPair ? PAWN_PAIRS : 1;
        for (int g = 0; g < groupCount_; ++g) count *= CountPlacings(groups_[g], placing);
        next += count;
    }
    offsets->push_back(next);
}

TableIndex::Symmetry TableIndex::FindSymmetry(const TablePosition& position) const {
    const int king = position.King(sideToMove_), other = position.King(ChangeSide(sideToMove_));
    Symmetry symmetry{FileOf(king) > 3, false, false};
    if (class_.HasPawns()) return symmetry;
    symmetry.Ranks = RankOf(king) > 3;
    const auto height = [](int square) { return RankOf(square) - FileOf(square); };
    const int ours = height(symmetry(king)), theirs = height(symmetry(other));
    symmetry.Diagonal = ours > 0 || (ours == 0 && theirs > 0);
    return symmetry;
}

int64_t TableIndex::IndexIn(const TablePosition& position, Symmetry symmetry, int capturer) const {
    const int them = ChangeSide(sideToMove_);
    const int king = symmetry(position.King(sideToMove_)), other = symmetry(position.King(them));
    const int kingPair = PairsOf(class_).Number[king][other];
    if (kingPair < 0) return -1;
    Placing placing{other, SquareBit(king) | SquareBit(other)};
    int64_t rest = 0;
    Bitboard pawnPair = 0;
    if (capturer >= 0) {
        const int number = PawnPair::Number(symmetry(capturer), symmetry(position.DoubleStep));
        placing.Pair = PawnPair(number, sideToMove_).Squares(sideToMove_);
        pawnPair = SquareBit(capturer) | SquareBit(position.DoubleStep);
        rest = number;
    }
    for (int g = 0; g < groupCount_; ++g) {
        const Group& group = groups_[g];
        const Bitboard men = symmetry(position.Men[group.Side][group.Piece] & ~pawnPair);
        const Bitboard squares = SquaresFor(group, placing);
        if (men & ~squares) return -1;
        rest = rest * CountPlacings(group, placing) + RankMen(squares, men);
        placing.Men |= men;
        if (group.Side == sideToMove_ && group.Piece == PAWN) placing.OwnPawns = men;
    }
    return rest + (capturer >= 0 ? enPassant_ : ordinary_)[kingPair];
}

// Without pawns such a position and its mirror image have numbers of their own.
bool TableIndex::AreKingsOnDiagonal(const TablePosition& position, const Symmetry& symmetry) const {
    return (symmetry(position.Men[WHITE][KING] | position.Men[BLACK][KING]) & ~DIAGONAL) == 0;
}

bool TableIndex::IsSecondNumber(int64_t index, const TablePosition& position) const {
    const bool mayBe =
        class_.HasPawns() ? index >= OrdinarySize() : AreKingsOnDiagonal(position, {false, false, false});
    return mayBe && IndexOf(position) != index;
}

int64_t TableIndex::IndexOf(const TablePosition& position) const {
    const Symmetry symmetry = FindSymmetry(position);
    Bitboard capturers = EnPassantCapturers(position);
    if (capturers != 0) {
        // Two pawns that could take make two numbers.
        int64_t index = IndexIn(position, symmetry, PopLowest(capturers));
        if (capturers != 0) index = std::min(index, IndexIn(position, symmetry, LowestSquare(capturers)));
        return index;
    }
    const int64_t index = IndexIn(position, symmetry, -1);
    if (class_.HasPawns() || !AreKingsOnDiagonal(position, symmetry)) return index;
    return std::min(index, IndexIn(position, {symmetry.Files, symmetry.Ranks, !symmetry.Diagonal}, -1));
}

bool TableIndex::PlaceAll(int64_t rest, int kingPair, int pawnPair, TablePosition* position) const {
    const int them = ChangeSide(sideToMove_);
    const auto& [king, other] = PairsOf(class_).Squares[kingPair];
    *position = {};
    position->SideToMove = sideToMove_;
    position->Men[sideToMove_][KING] = SquareBit(king);
    position->Men[them][KING] = SquareBit(other);
    Placing placing{other, SquareBit(king) | SquareBit(other)};
    if (pawnPair >= 0) {
        const PawnPair pair(pawnPair, sideToMove_);
        placing.Pair = pair.Squares(sideToMove_);
        position->Men[sideToMove_][PAWN] = SquareBit(pair.Capturer);
        position->Men[them][PAWN] = SquareBit(pair.Victim);
        position->DoubleStep = pair.Victim;
    }
    int64_t digits[2 * TABLE_KINDS];
    for (int g = groupCount_ - 1; g >= 0; --g) {
        const int64_t placings = CountPlacings(groups_[g], placing);
        digits[g] = rest % placings;
        rest /= placings;
    }
    for (int g = 0; g < groupCount_; ++g) {
        const Group& group = groups_[g];
        const Bitboard squares = SquaresFor(group, placing);
        // Men on one square leave more of them free than were counted.
        if (CountSquares(squares) != CountSquaresFor(group, placing)) return false;
        const Bitboard men = MenByRank(squares, CountInGroup(group, placing), digits[g]);
        position->Men[group.Side][group.Piece] |= men;
        placing.Men |= men;
        if (group.Side == sideToMove_ && group.Piece == PAWN) placing.OwnPawns = men;
    }
    return IsPlayable(*position);
}

bool TableIndex::PositionAt(int64_t index, TablePosition* position) const {
    const bool hasPair = index >= OrdinarySize();
    const std::vector<int64_t>& offsets = hasPair ? enPassant_ : ordinary_;
    // Pairs of kings without any numbers are passed over.
    const auto next = std::upper_bound(offsets.begin(), offsets.end(), index);
    const int kingPair = static_cast<int>(next - offsets.begin()) - 1;
    int64_t rest = index - offsets[kingPair];
    if (!hasPair) return PlaceAll(rest, kingPair, -1, position);
    const int64_t pairSize = (offsets[kingPair + 1] - offsets[kingPair]) / PAWN_PAIRS;
    return PlaceAll(rest % pairSize, kingPair, static_cast<int>(rest / pairSize), position);
}
