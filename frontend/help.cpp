#include <string>

#include "frontend/commands.h"
#include "platform/input.h"
#include "platform/output.h"

namespace {

struct HelpRow {
    const char* Command;
    const char* Description;
};

const HelpRow FirstPage[] = {
    {"analyze", "Enters analyze mode"},
    {"bench", "Counts the nodes and the time of a fixed set of searches"},
    {"black", "Sets black to move and engine side to white"},
    {"brd", "Prints a board"},
    {"bkm", "Prints book moves for current position"},
    {"easy", "Toggles pondering off"},
    {"edit", "Edit board position"},
    {"egtbstat", "Displays current EGTB status"},
    {"epdevl <f>", "Produces static evaluations for EPD-file <f>"},
    {"evl", "Shows static evaluation for current position"},
    {"force", "Toggles autoplay off"},
    {"go", "Starts search"},
    {"hard", "Toggles pondering on"},
    {"help", "Displays this help"},
    {"level <m> <t> <i>", "Sets ICS time controls"},
    {"loadfen <e>", "Sets FEN-position <e>"},
    {"moves", "Displays all legal moves with ranking priorities"},
    {"mvd", "Shows position flags"},
    {"new", "Starts a new game"},
    {"nopost", "Toggles silent mode on"},
};

const HelpRow SecondPage[] = {
    {"perft <d>", "Tests the move generator/make_move with depth <d>"},
    {"pgneval <f> <o>", "Adds evaluation statistics of the games of <f> to <o>"},
    {"post", "Toggles silent mode off"},
    {"q[uit]", "Exits Kestrovan"},
    {"remove", "Un-makes last moves of each side"},
    {"sd <d>", "Sets max search depth to <d>"},
    {"st <t>", "Sets max search time to <t>"},
    {"time <t>", "Sets remaining game time in milliseconds to <t>"},
    {"uci", "UCI mode"},
    {"undo", "Un-makes last move of one side"},
    {"white", "Sets white to move and engine side to black"},
};

// The dots end in column 26, the description begins in column 28.
void PrintRow(const HelpRow& row) {
    constexpr size_t DOTS_END = 26;
    std::string line = std::string(row.Command) + " ";
    line.resize(DOTS_END, '.');
    Print("%s %s\n", line.c_str(), row.Description);
}

}  // namespace

void RunHelp() {
    Print("Kestrovan commands:\n%s\n\n", std::string(78, '-').c_str());
    for (const HelpRow& row : FirstPage) PrintRow(row);
    Print("\nPress <enter> to continue....");
    FlushOutput();
    std::string answer;
    ReadLine(answer);
    Print("\n");
    for (const HelpRow& row : SecondPage) PrintRow(row);
    Print("\n");
}
