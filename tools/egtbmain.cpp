// kestrovan-egtb: makes endgame tablebases, checks them and shows what they hold.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <string>
#include <thread>
#include <vector>

#include "egtb/tableclass.h"
#include "egtb/tablestore.h"
#include "tools/egtbbuild.h"
#include "tools/egtbshow.h"
#include "tools/toolmain.h"

namespace {

// What the command line says.
struct Request {
    std::vector<std::string> Names;
    std::string Fen;
    TableBuildOptions Options;
    int64_t MemoryMB = 4096;
};

CLI::App* AddCommand(CLI::App& app, Request& request, const char* name, const char* description) {
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("-d,--directory", request.Options.Directory, "Where the tables are")
        ->capture_default_str();
    return command;
}

CLI::App* AddClassCommand(CLI::App& app, Request& request, const char* name, const char* description,
                          const char* without) {
    CLI::App* command = AddCommand(app, request, name, description);
    const std::string classes =
        "Classes as krkn or KRvKN, or a number of men for all of so many; without any, ";
    command->add_option("classes", request.Names, classes + without);
    command->add_option("--threads", request.Options.Threads, "Threads that work at once")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    return command;
}

// "krkn", "KRKN" and "KRvKN" are one class; so is "knkr".
int ClassByName(const std::string& name) {
    MenCode sides[2] = {};
    int kings = 0;
    for (const char letter : name) {
        const int small = std::tolower(static_cast<unsigned char>(letter));
        if (small == 'k') {
            ++kings;
        } else if (small != 'v' || kings != 1) {
            const auto isMeant = [=](unsigned piece) { return PROMOTION_LETTERS[piece] == small; };
            const auto* kind = std::find_if(std::begin(TableKinds), std::end(TableKinds), isMeant);
            if (kind == std::end(TableKinds) || kings < 1 || kings > 2) return 0;
            MenCode& men = sides[kings - 1];
            if (CountMen(men, *kind) == MAX_SIDE_MEN) return 0;
            men += OneMan(*kind);
        }
    }
    return kings == 2 ? std::abs(FindTableClass(sides[WHITE], sides[BLACK])) : 0;
}

std::vector<int> ClassesOf(int men) {
    std::vector<int> numbers;
    for (int number = 1; number <= TABLE_CLASSES; ++number) {
        if (TableClasses[number].Men == men) numbers.push_back(number);
    }
    return numbers;
}

std::vector<int> ReadClasses(const std::vector<std::string>& names) {
    std::vector<int> numbers;
    for (const std::string& name : names) {
        const bool isMen = name.size() == 1 && name[0] >= '3' && name[0] <= '0' + MAX_TABLE_MEN;
        const std::vector<int> meant = isMen ? ClassesOf(name[0] - '0') : std::vector<int>{ClassByName(name)};
        if (meant.front() == 0) throw TableError(name + " is no class of tables; one is named like krpkr");
        numbers.insert(numbers.end(), meant.begin(), meant.end());
    }
    return numbers;
}

// Reads the command line and does what it says; returns the exit status.
int Run(int argc, char** argv) {
    Request request;
    request.Options.Directory = "tablebases";
    request.Options.Threads = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 256u));
    CLI::App app("Makes endgame tablebases for Kestrovan, checks them and shows what they hold.",
                 "kestrovan-egtb");
    app.require_subcommand(1);
    CLI::App* build = AddClassCommand(app, request, "build", "Make tables, and the smaller ones they need",
                                      "all classes of three and four men");
    build->add_option("--memory", request.MemoryMB, "Megabytes that may be used")
        ->check(CLI::Range(1, 1 << 20))
        ->capture_default_str();
    build->add_flag("--verify", request.Options.Verifies, "Compare every new position with its moves");
    const CLI::App* verify = AddClassCommand(app, request, "verify", "Compare every position with its moves",
                                             "all that are there");
    AddClassCommand(app, request, "stats", "Show results and longest mates", "all that are there");
    CLI::App* probe = AddCommand(app, request, "probe", "Show the value of a position and of its moves");
    probe->add_option("fen", request.Fen, "The position")->required();
    const CLI::App* list = AddCommand(app, request, "list", "Show which tables the program finds");
    CLI11_PARSE(app, argc, argv);

    TableBuildOptions& options = request.Options;
    if (*build) {
        options.MemoryBytes = request.MemoryMB << 20;
        if (request.Names.empty()) request.Names = {"3", "4"};
        return BuildTables(ReadClasses(request.Names), options) ? 0 : 1;
    }
    if (*probe) return ShowPosition(request.Fen, options.Directory) ? 0 : 1;
    if (*list) return ListTables(options.Directory) ? 0 : 1;
    const bool isWhole = request.Names.empty();
    const std::vector<int> classes = isWhole ? FindClasses(options.Directory) : ReadClasses(request.Names);
    if (classes.empty()) throw TableError("there are no tables in " + options.Directory);
    const auto show = *verify ? VerifyTables : ShowStatistics;
    return show(classes, options.Directory, options.Threads) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return RunTool("kestrovan-egtb", Run, argc, argv);
}
