#include "egtb/tablebases.h"

#include <cstdio>

int UseEGTB = 1;
char tb_path[TB_PATH_SIZE];
int EGTBHashSize = 1048576;
int FoundPieces = 0;
int64_t TablebaseMemory = 0;

void SetTablebasePath(const char* path) {
    std::snprintf(tb_path, TB_PATH_SIZE, "%s", path);
}

void RegisterTablebases() {
    // There is no class of tables to look for yet.
    FoundPieces = 0;
    TablebaseMemory = 0;
}
