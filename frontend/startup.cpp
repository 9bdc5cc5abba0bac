#include "frontend/startup.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>

#include "book/bookfile.h"
#include "book/booklearning.h"
#include "book/booksettings.h"
#include "book/learnfile.h"
#include "book/learnscore.h"
#include "core/attacks.h"
#include "core/keys.h"
#include "core/movescore.h"
#include "egtb/tablebases.h"
#include "egtb/tablecache.h"
#include "egtb/tableprobe.h"
#include "egtb/tablereport.h"
#include "eval/bitbase.h"
#include "eval/weights.h"
#include "frontend/commands.h"
#include "frontend/hashtables.h"
#include "frontend/newgame.h"
#include "frontend/settings.h"
#include "frontend/tokens.h"
#include "platform/input.h"
#include "platform/output.h"
#include "platform/platform.h"
#include "search/modes.h"
#include "search/oracles.h"
#include "search/scores.h"
#include "search/timecontrol.h"

namespace {

constexpr char BANNER[] = "Kestrovan v1.50 [r2055/01.01.2014]";
constexpr int GREETING_MS = 1000;  // more than an interface needs to say "xboard"

void BuildTables() {
    InitHashKeys();
    InitAttackTables();
    InitPawnBitbase();
    InitWeights();
    ReloadWeights();
    ClearRecaptureStatistics();
}

static_assert(TABLEBASE_MATE == MATE);

// Prints a line about tables as a remark of the dialect spoken. An interface of xboard's first version, and
// whoever has not said yet what he is, gets it as it is.
void PrintTableRemark(const char* line) {
    const char* const start = UciMode ? "info string " : ProtocolVersion >= 2 ? "# " : "";
    Print("%s%s\n", start, line);
    FlushOutput();
}

// Whether the first line of input is that of an xboard interface; waits for it a little, but not for somebody
// to type.
bool IsXboard() {
    if (IsInputTyped()) return false;
    const int64_t end = ClockMs() + GREETING_MS;
    std::string line;
    while (!TakeWaitingLine(line)) {
        if (HasInputEnded() || ClockMs() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    UnreadLine(line);
    return line.starts_with("xboard");
}

}  // namespace

void PrintTablebaseCount() {
    if (FoundPieces > 0) {
        Print("%d piece EGTB files found\n", FoundPieces);
    } else {
        Print("EGTB files not found\n");
    }
    if (TablebaseMemory != 0) {
        Print("%dkb of RAM used for TB indices and decompression tables\n",
              static_cast<int>((TablebaseMemory + 1023) / 1024));
    }
    FlushOutput();
}

void ReportTablebases() {
    if (UseEGTB) PrintTablebaseCount();
}

void StartUp() {
    PrepareStandardStreams();
    Hooks = {ShutDown, IsCommandLine, AnswerAside};
    // 1. Defaults, and what they can be changed by.
    SetDefaultSettings();
    Print("%s\n", BANNER);
    FlushOutput();
    BuildTables();
    ReadSettingsFile();
    // 2. Memory and files. The keys were drawn before this seed, so they are the same in every run.
    AllocateHashTables();
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    if (!BookLoaded) OpenBook(DefaultBookPath());
    PrintSettings();
    if (UseLearningData || Learning) OpenLearningFile();
    LearnedProber = FindLearnedScore;
    TablebaseProber = ProbeTablebase;
    TableReporter = PrintTableRemark;
    // 3. The game.
    PostMode = 1;
    EngineTime = NO_CLOCK;
    FoundPieces = 0;
    if (UseEGTB) RegisterTablebases();
    NewGame();
    // No result is due before the first new game that a command starts.
    BookLearningDone = 1;
}

void RunCommandLoop() {
    // While it gets to know a program, xboard takes a line with "not found" for the news that it can't be
    // started.
    if (FoundPieces > 0 || !IsXboard()) ReportTablebases();
    AllocateTablebaseCache();
    std::string line;
    while (ReadLine(line)) {
        SetInputLine(line);
        InterpretCommand();
    }
    ShutDown();
}

void ShutDown() {
    FlushOutput();
    FreeHashTables();
    FreeTablebaseCache();
    CloseTablebases();
    CloseLearningFile();
    CloseBook();
    std::exit(0);
}
