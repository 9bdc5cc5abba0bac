#include "tools/bookshow.h"

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "book/bookcheck.h"
#include "book/bookerror.h"
#include "book/bookexport.h"
#include "book/bookimage.h"
#include "book/bookmove.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "core/san.h"

namespace {

// A book whose header can be trusted.
BookImage LoadBook(const std::string& path) {
    BookImage book(path);
    if (const char* fault = book.HeaderFault()) throw BookError(path + " is no book: " + fault);
    return book;
}

void SetUpPosition(const std::string& fen) {
    ResetBoard();
    if (fen.empty()) return;
    LoadCommonFEN(fen.c_str());
    if (const char* fault = FindPositionFault()) throw BookError(std::string("illegal position: ") + fault);
}

void PlayMoves(const std::string& moves) {
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        // Move numbers may stand before the moves.
        const size_t number = word.find_first_not_of("0123456789");
        if (number == std::string::npos) continue;
        if (word[number] == '.') word.erase(0, word.find_first_not_of("0123456789."));
        if (word.empty()) continue;
        Move move = NO_MOVE;
        const SanResult result = ResolveSan(word.c_str(), &move);
        if (result == SAN_AMBIGUOUS) throw BookError("ambiguous move: " + word);
        if (result == SAN_UNKNOWN) throw BookError("no legal move: " + word);
        MakeMove(move, 1);
        ReserveHistory(HISTORY_RESERVE);
    }
}

}  // namespace

void ListBook(const std::string& bookPath, const std::string& moves, const std::string& fen) {
    const BookImage book = LoadBook(bookPath);
    SetUpPosition(fen);
    PlayMoves(moves);
    const int64_t node = book.Find(CurrentBookKey());
    if (node == BookImage::NOWHERE) {
        std::printf("The position is not in the book.\n");
        return;
    }
    if (!book.HasList(node)) throw BookError("the book is damaged: the position has no list of moves");
    for (const BookMove& entry : book.Moves(node)) {
        const std::string results = DescribeResults(entry, book.Version());
        const Move move = LegalBookMove(entry.From, entry.To);
        if (move == NO_MOVE) {
            std::printf("%-7s illegal here  %s\n", SquaresText(entry).c_str(), results.c_str());
        } else {
            std::printf("%-7s %-5s  %s\n", MoveToSan(move), MoveToText(move), results.c_str());
        }
    }
}

void ExportBookTo(const std::string& bookPath, const std::string& textPath, int maxPlies) {
    const BookImage book = LoadBook(bookPath);
    std::error_code error;
    if (std::filesystem::equivalent(bookPath, textPath, error)) {
        throw BookError("the text would overwrite " + bookPath + ", which it is made of");
    }
    std::FILE* stream = textPath.empty() ? stdout : std::fopen(textPath.c_str(), "w");
    if (stream == nullptr) throw BookError("can't make " + textPath);
    ExportBook(book, maxPlies, stream);
    if (textPath.empty()) return;
    const bool hasFailed = std::ferror(stream) != 0;
    if (std::fclose(stream) != 0 || hasFailed) throw BookError("can't write " + textPath);
}

bool CheckBookFile(const std::string& bookPath) {
    const BookImage book(bookPath);
    const BookReport report = CheckBook(book);
    for (const BookFaults& faults : report.Faults) {
        std::printf("%s: %" PRId64 "\n", faults.Kind, faults.Count);
        for (const std::string& place : faults.Places) std::printf("  %s\n", place.c_str());
        const int64_t more = faults.Count - static_cast<int64_t>(faults.Places.size());
        if (more > 0) std::printf("  and %" PRId64 " more\n", more);
    }
    if (book.HeaderFault() == nullptr) {
        std::printf("version %d, %" PRId64 " positions, %" PRId64 " reached from the initial one, %" PRId64
                    " moves, %" PRId64 " unused bytes\n",
                    book.Version(), book.Nodes(), report.Reached, report.Moves, report.UnusedBytes);
    }
    std::printf("%s\n", report.Faults.empty() ? "no fault" : "the book is damaged");
    return report.Faults.empty();
}
