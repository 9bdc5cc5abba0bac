#include "egtb/tablebases.h"

int UseEGTB = 1;
int TablebaseCacheSize = 1048576;
int FoundPieces = 0;
int64_t TablebaseMemory = 0;

std::string& TablebasePath() {
    static std::string path = "c:\\tablebases\\";
    return path;
}

void RegisterTablebases() {
    // There is no class of tables to look for yet.
    FoundPieces = 0;
    TablebaseMemory = 0;
}
