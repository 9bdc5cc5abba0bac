#include "tests/search/smalltables.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "core/attackquery.h"
#include "core/bitboard.h"
#include "core/board.h"
#include "core/makemove.h"
#include "tests/support/walker.h"

namespace {

constexpr int POSITIONS = 2 << 18;  // of one ending: side to move, two kings, the man
constexpr int LONGEST = 30;         // moves

std::vector<TableValue> Tables[PIECE_CODES];

// The number of a position with White's man, the smallest among its mirror images.
int IndexOf(int side, int king, int loneKing, int man, bool hasPawn) {
    int index = POSITIONS;
    const auto turn = [](int square, int image) {
        if (image & 4) square = MakeSquare(RankOf(square), FileOf(square));
        return square ^ ((image & 1) * 7) ^ ((image >> 1 & 1) * 56);
    };
    for (const int image : {0, 1, 2, 3, 4, 5, 6, 7}) {
        if (hasPawn && image > 1) break;
        const int turned = ((side * 64 + turn(king, image)) * 64 + turn(loneKing, image)) * 64;
        index = std::min(index, turned + turn(man, image));
    }
    return index;
}

struct Place {
    unsigned Piece;  // EMPTY for what no table covers
    int Index;
};

Place PlaceOf() {
    const int strong = board.Material[WHITE] > 0 ? WHITE : BLACK, flip = strong == WHITE ? 0 : 56;
    for (const unsigned piece : {QUEEN, ROOK, PAWN}) {
        if (board.PieceCount != 3 || board.Pieces[piece][strong] == 0) continue;
        const auto square = [=](int side) { return static_cast<int>(board.KingSquare[side]) ^ flip; };
        const int man = LowestSquare(board.Pieces[piece][strong]) ^ flip;
        return {piece, IndexOf(board.SideToMove == strong ? WHITE : BLACK, square(strong),
                               square(ChangeSide(strong)), man, piece == PAWN)};
    }
    return {EMPTY, 0};
}

// A position that has no value yet, and what its moves lead to.
struct Unsolved {
    int Index;
    bool IsInCheck;
    std::vector<Place> Children;
};

// Sets up the position of a number; false when it is none, or another number stands for it.
bool SetUp(int index, unsigned piece) {
    const int side = index >> 18, king = index >> 12 & 63, loneKing = index >> 6 & 63, man = index & 63;
    if (king == loneKing || king == man || loneKing == man) return false;
    if (piece == PAWN && (RankOf(man) == 0 || RankOf(man) == 7)) return false;
    if (IndexOf(side, king, loneKing, man, piece == PAWN) != index) return false;
    ClearBoard();
    board.CastlingFlags = 0;
    HistoryLength = 0;
    AddPiece(king, WHITE, KING);
    AddPiece(loneKing, BLACK, KING);
    AddPiece(man, WHITE, piece);
    board.SideToMove = side;
    return !IsKingAttacked(ChangeSide(side));
}

std::vector<Unsolved> ListPositions(unsigned piece) {
    std::vector<Unsolved> positions;
    for (int index = 0; index < POSITIONS; ++index) {
        if (!SetUp(index, piece)) continue;
        positions.push_back({index, IsKingAttacked(board.SideToMove), {}});
        for (const Move move : LegalMoves()) {
            MakeMove(move, 1);
            positions.back().Children.push_back(PlaceOf());
            UnmakeMove();
        }
    }
    return positions;
}

TableValue ValueAt(const Place& place) {
    return place.Piece == EMPTY ? TABLE_DRAW : Tables[place.Piece][static_cast<size_t>(place.Index)];
}

// Gives their value to all positions for which the test holds.
template <typename Test>
void Settle(std::vector<Unsolved>& positions, unsigned piece, TableValue value, Test test) {
    std::erase_if(positions, [&](const Unsolved& position) {
        if (!test(position)) return false;
        Tables[piece][static_cast<size_t>(position.Index)] = value;
        return true;
    });
}

void Solve(unsigned piece) {
    Tables[piece].assign(POSITIONS, TABLE_DRAW);
    std::vector<Unsolved> positions = ListPositions(piece);
    for (int moves = 0; moves <= LONGEST; ++moves) {
        const auto isWonInTime = [=](const Place& place) {
            const TableValue value = ValueAt(place);
            return IsWin(value) && value <= moves;
        };
        Settle(positions, piece, MatedIn(moves), [&](const Unsolved& position) {
            if (position.Children.empty()) return position.IsInCheck;
            return std::all_of(position.Children.begin(), position.Children.end(), isWonInTime);
        });
        Settle(positions, piece, MateIn(moves + 1), [&](const Unsolved& position) {
            return std::any_of(position.Children.begin(), position.Children.end(),
                               [=](const Place& place) { return ValueAt(place) == MatedIn(moves); });
        });
    }
}

}  // namespace

void SolveSmallTables() {
    if (!Tables[PAWN].empty()) return;
    for (const unsigned piece : {QUEEN, ROOK, PAWN}) Solve(piece);
    ResetBoard();
}

TableValue SmallTableValue() {
    const Place place = PlaceOf();
    return place.Piece == EMPTY ? TABLE_BROKEN : ValueAt(place);
}

bool ProbeSmallTables(int* score) {
    const TableValue value = SmallTableValue();
    if (value == TABLE_BROKEN) return false;
    *score = IsWin(value) ? 32700 - 2 * value : value == TABLE_DRAW ? 0 : 2 * MateMoves(value) - 32700;
    return true;
}
