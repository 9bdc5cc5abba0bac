// kestrovan-book: makes opening books out of games, and shows what they hold.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "book/bookerror.h"
#include "book/booktree.h"
#include "tools/bookbuild.h"
#include "tools/bookshow.h"
#include "tools/toolmain.h"

namespace {

constexpr int DEEPEST = BookTree::LONGEST_WAY;  // plies

// What the command line says.
struct Request {
    std::vector<std::string> Games, Lines;
    std::string Book, Output, Moves, Fen;
    BookOptions Options;
    int64_t MemoryMB = 256;
    int ExportDepth = DEEPEST;
};

CLI::App* AddBuild(CLI::App& app, Request& request) {
    CLI::App* build = app.add_subcommand("build", "Make a book out of games");
    BookOptions& options = request.Options;
    build->add_option("files", request.Games, "Files of games (PGN)");
    build->add_option("-o,--output", request.Output, "The book, usually Book.kvb")->required();
    build->add_option(
        "--lines", request.Lines,
        "Files of opening lines (PGN): moves without results, for positions in which no move of "
        "the games is left");
    build->add_option("--version", options.Version, "0: moves with weights, 1: moves with results")
        ->check(CLI::Range(0, 1))
        ->capture_default_str();
    build->add_option("--depth", options.Depth, "Plies of a game that count")
        ->check(CLI::Range(1, DEEPEST))
        ->capture_default_str();
    build->add_option("--min-games", options.MinGames, "Games that a move needs")
        ->check(CLI::Range(1, 1000000000))
        ->capture_default_str();
    build->add_option("--min-share", options.MinShare, "Percent of its position's games that a move needs")
        ->check(CLI::Range(0.0, 100.0))
        ->capture_default_str();
    build->add_option("--min-score", options.MinScore, "Percent of its points that a move needs")
        ->check(CLI::Range(0.0, 100.0))
        ->capture_default_str();
    build
        ->add_option("--max-count", options.MaxCount,
                     "The largest count of a move; after a smaller one later games weigh more")
        ->check(CLI::Range(1, 254))
        ->capture_default_str();
    build->add_option("--memory", request.MemoryMB, "Megabytes for the moves of the games")
        ->check(CLI::Range(1, 1 << 20))
        ->capture_default_str();
    return build;
}

CLI::App* AddReader(CLI::App& app, Request& request, const char* name, const char* description) {
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("book", request.Book, "The book")->required();
    return command;
}

// Reads the command line and does what it says; returns the exit status.
int Run(int argc, char** argv) {
    Request request;
    CLI::App app("Makes opening books for Kestrovan out of games, and shows what they hold.",
                 "kestrovan-book");
    app.require_subcommand(1);
    const CLI::App* build = AddBuild(app, request);
    CLI::App* list = AddReader(app, request, "list", "Show the moves of a position");
    list->add_option("--moves", request.Moves, "The moves that lead to it, as e2e4 or e4");
    list->add_option("--fen", request.Fen, "The position, or the one that the moves begin from");
    CLI::App* exporting = AddReader(app, request, "export", "Write the book as text");
    exporting->add_option("-o,--output", request.Output, "The text; without it, standard output");
    exporting->add_option("--depth", request.ExportDepth, "Plies from the beginning")
        ->check(CLI::Range(1, DEEPEST))
        ->capture_default_str();
    const CLI::App* check = AddReader(app, request, "check", "Look for damage");
    CLI11_PARSE(app, argc, argv);

    if (*build) {
        if (request.Games.empty() && request.Lines.empty())
            throw BookError("no file of games or lines is named");
        request.Options.MemoryBytes = request.MemoryMB << 20;
        BuildBook(request.Games, request.Lines, request.Output, request.Options);
    } else if (*list) {
        ListBook(request.Book, request.Moves, request.Fen);
    } else if (*exporting) {
        ExportBookTo(request.Book, request.Output, request.ExportDepth);
    } else if (*check) {
        return CheckBookFile(request.Book) ? 0 : 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return RunTool("kestrovan-book", Run, argc, argv);
}
