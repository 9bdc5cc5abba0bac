#include "book/book.h"

#include "core/board.h"
#include "platform/output.h"
#include "platform/platform.h"

int OwnBook = 1;
int UseBookWeights = 1;
int UseBookLearning = 1;
int BookLearningMode = 0;
int BookLearningBound = 400;
int VarietyOfPlay = 10;
int Learning = 0;
int UseLearningData = 0;
int LogLearningIntoFile = 0;

int BookLoaded = 0;
int BookLearningDone = 1;

void OpenBook(const std::string& path) {
    if (FileLength(path) < 0) {
        Print("Error opening \"%s\"!\n", path.c_str());
    } else {
        Print("Opening books can't be read by this version: \"%s\"\n", path.c_str());
    }
    FlushOutput();
}

void ListBookMoves() {
    const auto low = static_cast<uint32_t>(board.HashKey), high = static_cast<uint32_t>(board.HashKey >> 16);
    Print("Current nhash1 = %d, nhash2 = %d\n", static_cast<int>(low), static_cast<int>(high));
    if (!BookLoaded) Print("No book loaded...\n");
    FlushOutput();
}

void ResetBookGame() {
    BookLearningDone = 0;
}
