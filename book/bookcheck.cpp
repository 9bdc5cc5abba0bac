#include "book/bookcheck.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "book/booktree.h"

namespace {

class Checker {
  public:
    explicit Checker(const BookImage& book) : book_(book) {}

    BookReport Run() {
        if (const char* fault = book_.HeaderFault()) {
            Report("damaged header", fault);
            return report_;
        }
        CheckHeader();
        CheckOrder();
        CheckPlaces();
        for (int64_t node = 0; node < book_.Nodes(); ++node) CheckEntries(node);
        CheckLegality();
        return report_;
    }

  private:
    void Report(const char* kind, const std::string& place) {
        auto faults =
            std::find_if(report_.Faults.begin(), report_.Faults.end(),
                         [=](const BookFaults& known) { return std::strcmp(known.Kind, kind) == 0; });
        if (faults == report_.Faults.end()) {
            report_.Faults.push_back({kind, 0, {}});
            faults = report_.Faults.end() - 1;
        }
        ++faults->Count;
        if (faults->Places.size() < BookFaults::MOST_PLACES) faults->Places.push_back(place);
    }

    static std::string NodeText(int64_t node) { return "position " + std::to_string(node); }

    std::string ListText(int64_t node) const {
        return NodeText(node) + ", list at byte " + std::to_string(book_.ListPlace(node));
    }

    void CheckHeader() {
        if (book_.HasReservedBits()) Report("damaged header", "the reserved bytes are not 0");
        if (book_.Nodes() < book_.NamedNodes()) {
            Report("truncated index", std::to_string(book_.Nodes()) + " of " +
                                          std::to_string(book_.NamedNodes()) + " records are there");
        }
    }

    void CheckOrder() {
        for (int64_t node = 1; node < book_.Nodes(); ++node) {
            if (book_.Key(node) == book_.Key(node - 1))
                Report("position that is there twice", NodeText(node));
            if (IsBefore(book_.Key(node), book_.Key(node - 1)))
                Report("position out of order", NodeText(node));
        }
    }

    void CheckPlaces() {
        std::vector<std::pair<int64_t, int64_t>> lists;  // place and node
        for (int64_t node = 0; node < book_.Nodes(); ++node) {
            if (book_.HasList(node)) {
                lists.emplace_back(book_.ListPlace(node), node);
            } else {
                Report("list outside the file's part for lists", ListText(node));
            }
        }
        std::sort(lists.begin(), lists.end());
        int64_t end = book_.ListsBegin();
        for (const auto& [place, node] : lists) {
            if (place < end) Report("list that reaches into another", ListText(node));
            report_.UnusedBytes += std::max<int64_t>(0, place - end);
            end = std::max(end, place + book_.ListBytes(node));
        }
        report_.UnusedBytes += std::max<int64_t>(0, book_.Length() - end);
    }

    void CheckEntries(int64_t node) {
        std::vector<std::pair<int, int>> seen;
        for (const BookMove& move : book_.Moves(node)) {
            ++report_.Moves;
            const auto text = [&] {
                return ListText(node) + ", entry " + std::to_string(seen.size()) + ": " + SquaresText(move);
            };
            if (move.From > H8 || move.To > H8 || move.From == move.To) Report("impossible squares", text());
            const bool isHalfRemoved = !move.IsRemoved && std::max(move.Good, move.Bad) == REMOVED_WEIGHT;
            if (isHalfRemoved) Report("count that is too large", text());
            const std::pair squares(move.From, move.To);
            if (std::find(seen.begin(), seen.end(), squares) != seen.end()) {
                Report("move that is there twice", text());
            }
            seen.push_back(squares);
        }
    }

    void CheckLegality() {
        const BookTree tree(book_, BookTree::LONGEST_WAY);
        report_.Reached = static_cast<int64_t>(tree.Places().size());
        for (size_t place = 0; place < tree.Places().size(); ++place) {
            const int64_t node = tree.Places()[place].Node;
            tree.SetUp(static_cast<int>(place));
            for (const BookMove& move : book_.Moves(node)) {
                if (LikelyBookMove(move) != NO_MOVE) continue;
                Report("illegal move", ListText(node) + ": " + SquaresText(move));
            }
        }
    }

    const BookImage& book_;
    BookReport report_;
};

}  // namespace

BookReport CheckBook(const BookImage& book) {
    return Checker(book).Run();
}
