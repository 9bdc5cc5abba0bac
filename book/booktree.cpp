#include "book/booktree.h"

#include <algorithm>

#include "core/board.h"
#include "core/makemove.h"

BookTree::BookTree(const BookImage& book, int maxPlies)
    : placeOfNode_(static_cast<size_t>(book.Nodes()), -1) {
    const auto add = [this](const BookPlace& place) {
        if (place.Node == BookImage::NOWHERE || PlaceOf(place.Node) >= 0) return;
        placeOfNode_[static_cast<size_t>(place.Node)] = static_cast<int>(places_.size());
        places_.push_back(place);
    };
    ResetBoard();
    add({book.Find(CurrentBookKey()), -1, NO_MOVE, 0});
    for (size_t i = 0; i < places_.size(); ++i) {
        const BookPlace place = places_[i];
        if (place.Ply >= std::min(maxPlies, LONGEST_WAY)) continue;
        SetUp(static_cast<int>(i));
        for (const BookMove& entry : book.Moves(place.Node)) {
            const Move move = LikelyBookMove(entry);
            if (move != NO_MOVE) add({NodeBehind(book, move), static_cast<int>(i), move, place.Ply + 1});
        }
    }
}

int BookTree::PlaceOf(int64_t node) const {
    return node == BookImage::NOWHERE ? -1 : placeOfNode_[static_cast<size_t>(node)];
}

void BookTree::SetUp(int place) const {
    std::vector<Move> way;
    for (int step = place; places_[static_cast<size_t>(step)].Parent >= 0;) {
        way.push_back(places_[static_cast<size_t>(step)].Move);
        step = places_[static_cast<size_t>(step)].Parent;
    }
    ResetBoard();
    std::for_each(way.rbegin(), way.rend(), [](Move move) { MakeMove(move, 1); });
}

int64_t NodeBehind(const BookImage& book, Move move) {
    MakeMove(move, 1);
    const int64_t node = book.Find(CurrentBookKey());
    UnmakeMove();
    return node;
}
