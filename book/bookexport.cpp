#include "book/bookexport.h"

#include <cinttypes>
#include <string>
#include <vector>

#include "book/booktree.h"
#include "core/board.h"
#include "core/makemove.h"
#include "core/san.h"

namespace {

class Exporter {
  public:
    Exporter(const BookImage& book, int maxPlies, std::FILE* stream)
        : book_(book), tree_(book, maxPlies - 1), stream_(stream) {}

    void Write() {
        std::fprintf(stream_,
                     "# A book of version %d with %" PRId64
                     " positions. Numbers in brackets are those of "
                     "the positions behind the moves.\n\n",
                     book_.Version(), book_.Nodes());
        ResetBoard();
        if (!tree_.Places().empty()) WritePlace(0);
        std::fprintf(stream_, "\n# Reached: %zu of %" PRId64 " positions.\n", tree_.Places().size(),
                     book_.Nodes());
    }

  private:
    // Writes the moves of the place, which is on the board, and what is reached first through them.
    void WritePlace(int place) {
        for (const BookMove& entry : book_.Moves(tree_.Places()[static_cast<size_t>(place)].Node)) {
            const Move move = LikelyBookMove(entry);
            if (move == NO_MOVE) {
                std::fprintf(stream_, "%s%s  illegal\n", Heading().c_str(), SquaresText(entry).c_str());
                continue;
            }
            std::fprintf(stream_, "%s%s  %s", Heading().c_str(), MoveToSan(move),
                         DescribeResults(entry, book_.Version()).c_str());
            const int next = tree_.PlaceOf(NodeBehind(book_, move));
            const BookPlace* behind = next < 0 ? nullptr : &tree_.Places()[static_cast<size_t>(next)];
            const bool isFirst = behind != nullptr && behind->Parent == place && behind->Move == move;
            if (behind != nullptr) std::fprintf(stream_, isFirst ? "  [%d]" : "  see [%d]", next + 1);
            std::fprintf(stream_, "\n");
            // Two entries may be the same move.
            if (!isFirst || isWritten_[static_cast<size_t>(next)]) continue;
            isWritten_[static_cast<size_t>(next)] = true;
            MakeMove(move, 1);
            WritePlace(next);
            UnmakeMove();
        }
    }

    // Indentation and number of the next move.
    static std::string Heading() {
        const int ply = GamePly();
        return std::string(static_cast<size_t>(ply), ' ') + std::to_string(ply / 2 + 1) +
               (ply % 2 == 0 ? ". " : "... ");
    }

    const BookImage& book_;
    BookTree tree_;
    std::FILE* stream_;
    std::vector<bool> isWritten_ = std::vector<bool>(tree_.Places().size());
};

}  // namespace

void ExportBook(const BookImage& book, int maxPlies, std::FILE* stream) {
    Exporter(book, maxPlies, stream).Write();
}
