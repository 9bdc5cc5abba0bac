#include "egtb/tablebases.h"

int UseEGTB = 1;
constinit std::string tb_path;
int EGTBHashSize = 1048576;
int FoundPieces = 0;
int64_t TablebaseMemory = 0;

void RegisterTablebases() {
    // There is no class of tables to look for yet.
    FoundPieces = 0;
    TablebaseMemory = 0;
}
