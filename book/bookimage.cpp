#include "book/bookimage.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "book/bookerror.h"
#include "book/bookmove.h"
#include "book/littleendian.h"
#include "core/board.h"
#include "core/legal.h"
#include "core/moverules.h"
#include "core/movetext.h"

namespace {

constexpr int BOOK_RESERVED_PLACE = BOOK_VERSION_PLACE + 4;

// The rights to castle of kings and rooks at home.
uint32_t PossibleRights() {
    uint32_t rights = 0;
    for (const int side : {WHITE, BLACK}) {
        const int home = KingHome(side);
        if (!HasMan(home, side, KING)) continue;
        if (HasMan(home + 3, side, ROOK)) rights |= ShortRight(side);
        if (HasMan(home - 4, side, ROOK)) rights |= LongRight(side);
    }
    return rights;
}

// The double step that a capture en passant would answer, or NO_MOVE.
Move PossibleDoubleStep(const BookMove& capture) {
    const int us = board.SideToMove, victim = MakeSquare(FileOf(capture.To), RankOf(capture.From));
    const int from = capture.To + PawnStep(us);
    if (from < A1 || from > H8 || board.PieceOn[from] != EMPTY || board.PieceOn[capture.To] != EMPTY) {
        return NO_MOVE;
    }
    const bool isDoubleStep = victim == capture.To - PawnStep(us) && HasMan(victim, ChangeSide(us), PAWN);
    const bool isFromHome = (RelativeRankBits(ChangeSide(us), 1) & SquareBit(from)) != 0;
    return isDoubleStep && isFromHome ? BuildMove(from, victim, PAWN) : NO_MOVE;
}

}  // namespace

BookImage::BookImage(const std::string& path) {
    std::error_code error;
    std::ifstream stream(path, std::ios::binary);
    if (!stream || std::filesystem::is_directory(path, error)) throw BookError("can't open " + path);
    bytes_.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    if (stream.bad()) throw BookError("can't read " + path);
}

const char* BookImage::HeaderFault() const {
    if (bytes_.size() < BOOK_HEADER_BYTES) return "it is too short for a book";
    if (std::memcmp(bytes_.data(), BOOK_MAGIC, BOOK_MAGIC_BYTES) != 0) return "it doesn't begin like a book";
    if (Version() != 0 && Version() != 1) return "it has an unknown version";
    if (NamedNodes() < 0) return "its number of positions is negative";
    return nullptr;
}

bool BookImage::HasReservedBits() const {
    return Word(BOOK_RESERVED_PLACE) != 0;
}

int64_t BookImage::Nodes() const {
    return std::min(NamedNodes(), (Length() - BOOK_HEADER_BYTES) / BOOK_RECORD_BYTES);
}

BookKey BookImage::Key(int64_t node) const {
    const uint8_t* record = &bytes_[static_cast<size_t>(BOOK_HEADER_BYTES + node * BOOK_RECORD_BYTES)];
    return {GetWord(record), GetWord(record + 4)};
}

int64_t BookImage::ListPlace(int64_t node) const {
    return GetWord(&bytes_[static_cast<size_t>(BOOK_HEADER_BYTES + node * BOOK_RECORD_BYTES + 8)]);
}

int64_t BookImage::ListsBegin() const {
    return BOOK_HEADER_BYTES + NamedNodes() * BOOK_RECORD_BYTES;
}

int64_t BookImage::ListBytes(int64_t node) const {
    return 1 + int64_t{ListCount(node)} * BookEntryBytes(Version() == 0);
}

bool BookImage::HasList(int64_t node) const {
    const int64_t place = ListPlace(node);
    return place >= ListsBegin() && place < Length() && ListBytes(node) <= Length() - place;
}

std::vector<BookMove> BookImage::Moves(int64_t node) const {
    std::vector<BookMove> moves;
    if (!HasList(node)) return moves;
    const uint8_t* entry = &bytes_[static_cast<size_t>(ListPlace(node))] + 1;
    for (int left = ListCount(node); left > 0; --left, entry += BookEntryBytes(Version() == 0)) {
        BookMove& move = moves.emplace_back();
        move.From = entry[0];
        move.To = entry[1];
        move.Good = entry[2];
        if (Version() == 0) {
            move.IsRemoved = move.Good == REMOVED_WEIGHT;
        } else {
            move.Bad = entry[3];
            move.IsRemoved = (move.Good | move.Bad << 8) == REMOVED_RESULTS;
        }
    }
    return moves;
}

int64_t BookImage::Find(const BookKey& key) const {
    int64_t first = 0, end = Nodes();
    while (first < end) {
        const int64_t middle = (first + end) / 2;
        if (Key(middle) == key) return middle;
        if (IsBefore(Key(middle), key)) {
            first = middle + 1;
        } else {
            end = middle;
        }
    }
    return NOWHERE;
}

int32_t BookImage::Word(size_t place) const {
    return static_cast<int32_t>(GetWord(&bytes_[place]));
}

Move LikelyBookMove(const BookMove& move) {
    Move legal = LegalBookMove(move.From, move.To);
    if (legal != NO_MOVE || move.From > H8 || move.To > H8) return legal;
    const uint32_t rights = board.CastlingFlags;
    HistoryRecord& last = History[HistoryLength - 1];
    const Move lastMove = last.Move;
    board.CastlingFlags = PossibleRights();
    last.Move = PossibleDoubleStep(move);
    legal = LegalBookMove(move.From, move.To);
    board.CastlingFlags = rights;
    last.Move = lastMove;
    return legal;
}

std::string SquaresText(const BookMove& move) {
    if (move.From > H8 || move.To > H8) return std::to_string(move.From) + "-" + std::to_string(move.To);
    return MoveToText(BuildMove(move.From, move.To, KING));
}

std::string DescribeResults(const BookMove& move, int version) {
    if (move.IsRemoved) return "removed";
    if (version == 0) return "weight " + std::to_string(move.Good);
    const unsigned sum = move.Good + move.Bad;
    if (sum == 0) return "no games";
    return std::to_string((move.Good * 100 + sum / 2) / sum) + " % (" + std::to_string(move.Good) +
           " good, " + std::to_string(move.Bad) + " bad)";
}
