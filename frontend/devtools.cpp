#include "frontend/devtools.h"

#include <cstdio>

#include "core/board.h"
#include "core/fen.h"
#include "eval/evaluate.h"
#include "platform/output.h"
#include "platform/platform.h"

namespace {

constexpr char PGN_FILE[] = "c:\\work\\source.pgn";
constexpr char COPY_FILE[] = "out.epd";
constexpr int LINE_BUFFER = 255;
constexpr int COPY_EVERY = 10;

void EvaluateLines(std::FILE* input, std::FILE* copy) {
    char line[LINE_BUFFER];
    for (int count = 1;; ++count) {
        const bool isRead = std::fgets(line, LINE_BUFFER, input) != nullptr;
        if (!isRead || std::feof(input)) return;
        LoadFEN(line);
        EngineSide = board.SideToMove;
        int result = -32700;
        Evaluate(&result);
        Print("%d\n", result);
        if (count % COPY_EVERY == 0 && copy != nullptr) std::fputs(line, copy);
    }
}

}  // namespace

void EvaluateEpdFile(const char* path) {
    std::FILE* input = std::fopen(path, "r");
    if (input == nullptr) {
        Print("Error opening file %s...\n", path);
        return;
    }
    std::FILE* copy = std::fopen(COPY_FILE, "w");
    EvaluateLines(input, copy);
    std::fclose(input);
    if (copy != nullptr) std::fclose(copy);
}

void EvaluatePgnFile() {
    if (FileLength(PGN_FILE) < 0) {
        Print("Error opening file %s...\n", PGN_FILE);
    } else {
        Print("Game files can't be evaluated by this version: %s\n", PGN_FILE);
    }
    FlushOutput();
}
