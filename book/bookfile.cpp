#include "book/bookfile.h"

#include <algorithm>
#include <cstring>

#include "book/bookformat.h"
#include "book/bookkeys.h"
#include "book/booksettings.h"
#include "book/littleendian.h"
#include "platform/output.h"
#include "platform/platform.h"

SharedFile BookFile;
int BookLoaded = 0;
int IsBookVersion0 = 0;

namespace {

constexpr char DEFAULT_NAME[] = "Book.kvb";

int64_t NodeCount = 0;  // as the file tells it; may be anything

// Reads bytes of the book; those behind its end are 255.
void ReadBytes(int64_t place, uint8_t* bytes, size_t size) {
    const size_t count = place >= 0 ? BookFile.ReadAt(place, bytes, size) : 0;
    std::memset(bytes + count, 255, size - count);
}

uint32_t ReadWord(int64_t place) {
    uint8_t bytes[4];
    ReadBytes(place, bytes, sizeof bytes);
    return GetWord(bytes);
}

// Deliberately accepts every file: the text is read as a line of at most 23 characters and compared with all
// 25 bytes of the magic, which it therefore never equals; and only an equal one is refused.
bool IsRefused() {
    constexpr size_t LINE = 23;
    char line[sizeof BOOK_MAGIC] = {};
    const size_t count = BookFile.ReadAt(0, line, LINE);
    char* const end = std::find(line, line + count, '\n');
    if (end < line + count) std::fill(end + 1, line + count, '\0');
    return std::memcmp(line, BOOK_MAGIC, sizeof BOOK_MAGIC) == 0;
}

// Where the move lists begin.
int64_t ListsStart() {
    return (NodeCount + BOOK_HEADER_RECORDS) * BOOK_RECORD_BYTES;
}

// Understands the file that has just been opened.
void ReadHeader() {
    if (IsRefused()) {
        Print("Invalid book format\n");
        return;
    }
    const auto version = static_cast<int32_t>(ReadWord(BOOK_VERSION_PLACE));
    IsBookVersion0 = version == 0;
    if (IsBookVersion0) {
        Print("NG: Book learning not supported for book version 0\n");
        UseBookLearning = UseBookWeights = 0;
    } else if (version > 1) {
        Print("Book version %d not supported\n", version);
        return;
    }
    NodeCount = static_cast<int32_t>(ReadWord(BOOK_COUNT_PLACE));
    Print("%d nodes in openings book\n", static_cast<int>(NodeCount));
    BookLoaded = 1;
}

}  // namespace

bool BookEntry::IsRemoved() const {
    return Statistic == (IsBookVersion0 ? REMOVED_WEIGHT : REMOVED_RESULTS);
}

void OpenBook(const std::string& path) {
    CloseBook();
    // One that can't be written to can still be played from.
    if (BookFile.Open(path, SharedFile::READ_WRITE) || BookFile.Open(path, SharedFile::READ_ONLY)) {
        ReadHeader();
    } else {
        Print("Error opening \"%s\"!\n", path.c_str());
    }
    FlushOutput();
}

std::string DefaultBookPath() {
    const std::string ours = ProgramDirectory() + DEFAULT_NAME;
    return FileLength(DEFAULT_NAME) < 0 && FileLength(ours) >= 0 ? ours : DEFAULT_NAME;
}

void CloseBook() {
    BookFile.Close();
    BookLoaded = IsBookVersion0 = 0;
    NodeCount = 0;
}

bool FindBookPosition(int64_t* listPlace) {
    if (!BookLoaded) return false;
    const BookKey key = CurrentBookKey();
    int64_t low = BOOK_HEADER_RECORDS, high = NodeCount + BOOK_HEADER_RECORDS;
    while (high > low) {
        const int64_t middle = (low + high) / 2;
        uint8_t record[BOOK_RECORD_BYTES];
        ReadBytes(middle * BOOK_RECORD_BYTES, record, sizeof record);
        const BookKey found{GetWord(record), GetWord(record + 4)};
        if (found == key) {
            *listPlace = GetWord(record + 8);
            return true;
        }
        if (IsBefore(key, found)) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return false;
}

bool ReadBookList(BookList* list) {
    int64_t place = 0;
    if (!FindBookPosition(&place)) return false;
    uint8_t bytes[1 + BOOK_LIST_LIMIT * BookEntryBytes(false)];
    ReadBytes(place, bytes, sizeof bytes);
    list->Place = place + 1;
    list->Count = bytes[0];
    const uint8_t* entry = bytes + 1;
    for (int i = 0; i < list->Count; ++i, entry += BookEntryBytes(IsBookVersion0)) {
        const unsigned bad = IsBookVersion0 ? 0 : entry[3];
        list->Entries[i] = {entry[0], entry[1], entry[2] + 256 * bad};
    }
    return true;
}

void WriteBookList(const BookList& list, int index) {
    constexpr int ENTRY = BookEntryBytes(false);
    const int first = index == WHOLE_LIST ? 0 : index, last = index == WHOLE_LIST ? list.Count : index + 1;
    uint8_t bytes[BOOK_LIST_LIMIT * ENTRY];
    uint8_t* end = bytes;
    for (int i = first; i < last; ++i, end += ENTRY) {
        const BookEntry& entry = list.Entries[i];
        end[0] = static_cast<uint8_t>(entry.From);
        end[1] = static_cast<uint8_t>(entry.To);
        end[2] = static_cast<uint8_t>(entry.Good());
        end[3] = static_cast<uint8_t>(entry.Bad());
    }
    const bool isInside = list.Place > ListsStart() && list.Place + ENTRY * list.Count <= BookFile.Length();
    if (isInside) BookFile.WriteAt(list.Place + ENTRY * first, bytes, static_cast<size_t>(end - bytes));
}
