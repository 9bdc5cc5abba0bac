#include "frontend/commands.h"

#include <algorithm>

#include "book/bookchoice.h"
#include "core/board.h"
#include "core/boardtext.h"
#include "core/movescore.h"
#include "core/movetext.h"
#include "core/textnumber.h"
#include "eval/evalreport.h"
#include "eval/evaluate.h"
#include "eval/weights.h"
#include "frontend/analyze.h"
#include "frontend/bench.h"
#include "frontend/devtools.h"
#include "frontend/hashtables.h"
#include "frontend/newgame.h"
#include "frontend/startup.h"
#include "frontend/tokens.h"
#include "platform/output.h"
#include "search/modes.h"
#include "search/ordering.h"
#include "search/root.h"
#include "search/timecontrol.h"

namespace {

// Numbers for experiments with the root search; nothing reads them yet.
int RootKnobs[6] = {1, 0, 0, 81, 323, 484};  // c1, c2, c3, m1, m2, m3

// Sets a number from the first argument, if there is one.
template <int& variable>
void SetNumber() {
    if (TokenCount >= 2) variable = TokenNumber(1);
}

template <int index>
void SetKnob() {
    if (TokenCount >= 2) RootKnobs[index] = TokenNumber(1);
}

template <int& variable, int value>
void SetTo() {
    variable = value;
}

template <int side>
void SetSideToMove() {
    board.SideToMove = side;
    EngineSide = ChangeSide(side);
}

void RunReset() {
    LearnPreviousGame();
    ResetGameMemory();
}

void RunClean() {
    ClearHashTables();
    ClearOrdering();
    ClearCheckReplies();
    LastScore = 0;
    LastScoreSide = WHITE;
}

void RunMoveTime() {
    if (TokenCount >= 2) MoveTime = BoundToInt(TokenNumber(1) * int64_t{100});
}

void RunTime() {
    if (TokenCount >= 2) EngineTime = ClockTime(TokenNumber(1));
}

void RunHard() {
    if (PonderingAllowed) PonderingOn = 1;
}

void RunEpdEvaluation() {
    if (TokenCount >= 2) EvaluateEpdFile(Tokens[1]);
}

// An argument of the line, or the default where there is none.
const char* ArgumentOr(int index, const char* text) {
    return TokenCount > index && Tokens[index][0] != '\0' ? Tokens[index] : text;
}

void RunPgnEvaluation() {
    EvaluatePgnFile(ArgumentOr(1, PGN_FILE), ArgumentOr(2, STATISTICS_FILE));
}

void RunIsReady() {
    Print("readyok\n");
}

void Ignore() {}

void RunWriteValues() {
    if (!WriteWeights(WEIGHTS_FILE)) Print("Error writing %s\n", WEIGHTS_FILE);
}

// Looked at first; each of them leaves the line to the chain.
const Command FirstCommands[] = {
    {"pgneval", RunPgnEvaluation, true},
    {"writevalues", RunWriteValues, true},
    {"q", ShutDown, true},
};

// The first row that the line matches takes it. Keywords match in both directions, so the order decides what
// every line means: "stop" is taken by "st", "ucinewgame" by "uci". Deliberate; new commands go to the end.
const Command CommandChain[] = {
    {"clean", RunClean},
    {"reload", ReloadWeights},
    {nullptr, RunMove},
    {"help", RunHelp},
    {"new", NewGame},
    {"post", SetTo<PostMode, 1>},
    {"reset", RunReset},
    {"level", RunLevel},
    {"moves", RunMoves},
    {"edit", RunEdit},
    {"loadfen", RunLoadFen},
    {"epdevl", RunEpdEvaluation},
    {"nopost", SetTo<PostMode, 0>},
    {"perft", RunPerft},
    {"sd", SetNumber<MaxDepth>},
    {"c3", SetKnob<2>},
    {"m3", SetKnob<5>},
    {"c2", SetKnob<1>},
    {"m2", SetKnob<4>},
    {"c1", SetKnob<0>},
    {"m1", SetKnob<3>},
    {"st", RunMoveTime},
    {"go", RunGo},
    {"ponderhit", RunPonderHit, true},
    {"white", SetSideToMove<WHITE>},
    {"stop", RunLateStop, true},
    {"remove", RunRemove},
    {"analyze", RunAnalyze},
    {"black", SetSideToMove<BLACK>},
    {"force", SetTo<ForceMode, 1>},
    {"brd", PrintBoard},
    {"time", RunTime},
    {"otime", SetNumber<OpponentTime>},
    {"easy", SetTo<PonderingOn, 0>},
    {"hard", RunHard},
    {"evl", PrintEvaluation},
    {"undo", RunUndo},
    {"fritz", SetTo<FritzMode, 1>, true},
    {"xboard", RunXboard},
    {"mvd", RunShowFlags},
    {"demo", RunDemo},
    {"bkm", ListBookMoves},
    {"uci", RunUci},
    {"ucinewgame", RunUciNewGame},
    {"setoption", RunSetOption},
    {"isready", RunIsReady},
    {"egtbstat", RunTablebaseStatus},
    {"position", RunPosition},
    {"debug", RunDebug, false, true},
    // What interfaces send for "otime".
    {"otim", SetNumber<OpponentTime>},
    // Version 2 of the xboard protocol. "rejected" and the like ask for nothing.
    {"protover", RunProtover},
    {"setboard", RunSetBoard},
    {"ping", RunPing, false, true},
    {"usermove", RunUserMove},
    {"accepted", Ignore, false, true},
    {"rejected", Ignore, false, true},
    {"computer", Ignore, false, true},
    {"name", Ignore, false, true},
    {"rating", Ignore, false, true},
    {"random", Ignore, false, true},
    {"variant", Ignore, false, true},
    {"hint", RunHint, false, true},
    {"draw", RunDrawOffer, false, true},
    {"memory", RunMemory},
    {"egtpath", RunTablebasePath},
    {"bench", RunBench},
};

bool MatchesLine(const Command& command, const char* line) {
    return command.Keyword == nullptr ? LooksLikeMove(line) : MatchKeyword(command.Keyword, line);
}

}  // namespace

std::vector<const Command*> FindCommands(const char* line) {
    std::vector<const Command*> found;
    for (const Command& command : FirstCommands) {
        if (MatchesLine(command, line)) found.push_back(&command);
    }
    for (const Command& command : CommandChain) {
        if (!MatchesLine(command, line)) continue;
        found.push_back(&command);
        if (!command.GoesOn) break;
    }
    return found;
}

bool IsCommandLine(const char* line) {
    return !FindCommands(line).empty();
}

void InterpretCommand() {
    Tokenize(InputLine, MatchKeyword("level", InputLine) ? " :" : " ");
    for (const Command* command : FindCommands(InputLine)) command->Run();
    FlushOutput();
}

bool AnswerAside(const std::string& line) {
    const std::vector<const Command*> commands = FindCommands(line.c_str());
    const auto isAside = [](const Command* command) { return command->IsAside; };
    if (commands.empty() || !std::all_of(commands.begin(), commands.end(), isAside)) return false;
    SetInputLine(line);
    InterpretCommand();
    return true;
}
