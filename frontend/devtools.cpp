#include "frontend/devtools.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "book/pgnreader.h"
#include "core/board.h"
#include "core/fen.h"
#include "eval/evaluate.h"
#include "frontend/evalrecord.h"
#include "frontend/gamekeeper.h"
#include "frontend/newgame.h"
#include "platform/output.h"
#include "platform/platform.h"

namespace {

constexpr char COPY_FILE[] = "out.epd";
constexpr int LINE_BUFFER = 255;
constexpr int COPY_EVERY = 10;
constexpr int REPORT_EVERY = 101;  // games

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// A file that is read and one that is written.
struct FilePair {
    FilePointer Input, Output;
};

FilePointer OpenFile(const char* path, const char* mode) {
    FilePointer file(std::fopen(path, mode));
    if (file == nullptr) Print("Error opening file %s...\n", path);
    return file;
}

// Opens both files; false, with a message, when one can't be, or the output would overwrite the input.
bool OpenFiles(const char* inputPath, const char* inputMode, const char* outputPath, const char* outputMode,
               FilePair* files) {
    // Some systems open directories as well.
    if (FileLength(inputPath) < 0) {
        Print("Error opening file %s...\n", inputPath);
        return false;
    }
    std::error_code error;
    if (std::filesystem::equivalent(inputPath, outputPath, error)) {
        Print("Error (input is output): %s\n", outputPath);
        return false;
    }
    files->Input = OpenFile(inputPath, inputMode);
    if (files->Input != nullptr) files->Output = OpenFile(outputPath, outputMode);
    return files->Output != nullptr;
}

// Completes the output; says so when not all of it could be written.
void CloseOutput(FilePointer output, const char* path) {
    const bool hasFailed = std::ferror(output.get()) != 0;
    if (std::fclose(output.release()) != 0 || hasFailed) Print("Error writing %s\n", path);
}

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
        if (count % COPY_EVERY == 0) std::fputs(line, copy);
    }
}

// Plays a game over and writes a line for every position.
void WriteGame(const PgnGame& game, std::FILE* output) {
    SetUpStart(game);
    for (int ply = 1; const Move move : game.Moves) {
        PlayMove(move);
        std::fputs(GetEvaluationRecord(game, ply++).c_str(), output);
    }
}

void PrintFault(const PgnGame& game) {
    const std::string& text = game.FaultMove.empty() ? game.Fault : game.FaultMove;
    Print(game.MoveFault == SAN_AMBIGUOUS ? "\nAmbigous move: %s...\n" : "\nCan't recognize: %s...\n",
          text.c_str());
}

// Returns at the end of the games, behind the first broken one or at a comment where only tags belong.
void WriteGames(PgnReader& reader, std::FILE* output) {
    PgnGame game;
    for (PgnStatus status; (status = reader.Next(game)) != PgnStatus::END;) {
        if (game.HasTagComment) {
            Print("\nCan't recognize: comment among the tags...\n");
            return;
        }
        WriteGame(game, output);
        if (status == PgnStatus::BROKEN) return PrintFault(game);
        if (game.Number % REPORT_EVERY == 0) {
            Print("Processed %d games...\r", static_cast<int>(game.Number));
            FlushOutput();
        }
    }
}

}  // namespace

void EvaluateEpdFile(const char* path) {
    FilePair files;
    if (!OpenFiles(path, "r", COPY_FILE, "w", &files)) return;
    const GameKeeper game;
    EvaluateLines(files.Input.get(), files.Output.get());
    CloseOutput(std::move(files.Output), COPY_FILE);
}

void EvaluatePgnFile(const char* path, const char* outputPath) {
    FilePair files;
    if (!OpenFiles(path, "rb", outputPath, "ab", &files)) return;
    const GameKeeper game;
    PgnReader reader(files.Input.get());
    WriteGames(reader, files.Output.get());
    if (reader.HasReadError()) Print("Error reading %s\n", path);
    CloseOutput(std::move(files.Output), outputPath);
}
