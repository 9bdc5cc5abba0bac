// kestrovan-match: plays matches between two engines and tells what the results say.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/platform.h"
#include "tools/interruption.h"
#include "tools/match.h"
#include "tools/toolmain.h"

namespace {

constexpr int DEFAULT_NODES = 20000, DEFAULT_PAIRS = 100;
constexpr int USAGE_STATUS = 2;  // nothing was played

// What the command line says.
struct Request {
    MatchPlayer::Request Players[2];
    MatchLimits Limits;
    std::string Openings, Pgn;
    int Games = 0;  // 0: as many as usual
    int Concurrency = 1;
    int Plies = 16;
    unsigned Seed = 1;
    double TimeoutSeconds = 60;
    std::vector<double> Sprt;
    bool PlaysOut = false;
};

std::string CheckOption(const std::string& text) {
    const size_t sign = text.find('=');
    return sign == 0 || sign == std::string::npos ? "NAME=VALUE is needed, not " + text : "";
}

void AddPlayer(CLI::App& app, const std::string& role, MatchPlayer::Request& player) {
    app.add_option(role, player.Program, "The " + role + " engine, a UCI program")->required();
    app.add_option("--option-" + role, player.Options, "NAME=VALUE, a UCI option; may be repeated")
        ->check(CheckOption)
        ->allow_extra_args(false);
    CLI::Option* directory = app.add_option("--directory-" + role, player.Directory,
                                            "Where it is started; else in an empty directory")
                                 ->check(CLI::ExistingDirectory);
    app.add_option("--values-" + role, player.Weights, "A file that it finds as values.txt")
        ->check(CLI::ExistingFile)
        ->excludes(directory);
}

// Reads SECONDS or SECONDS+INCREMENT; returns what is wrong, nothing if nothing is.
std::string ReadClock(const std::string& text, MatchLimits& limits) {
    constexpr double LONGEST = 100'000;
    double seconds = 0, increment = 0;
    int length = 0, whole = 0;
    std::sscanf(text.c_str(), "%lf%n+%lf%n", &seconds, &length, &increment, &whole);
    const bool isRead = static_cast<int>(text.size()) == std::max(length, whole);
    if (!isRead || !(seconds >= 0.01 && seconds <= LONGEST && increment >= 0 && increment <= LONGEST)) {
        return "SECONDS+INCREMENT is needed, as 10+0.1";
    }
    limits.BaseMs = static_cast<int64_t>(seconds * 1000);
    limits.IncrementMs = static_cast<int64_t>(increment * 1000);
    return "";
}

void AddLimits(CLI::App& app, Request& request) {
    MatchLimits& limits = request.Limits;
    CLI::Option* nodes = app.add_option("--nodes", limits.Nodes, "Nodes a move; 20000 if no limit is named")
                             ->check(CLI::Range(1, 1'000'000'000));
    CLI::Option* depth = app.add_option("--depth", limits.Depth, "Plies a move")->check(CLI::Range(1, 200));
    CLI::Option* clock = app.add_option_function<std::string>(
        "--tc",
        [&](const std::string& text) {
            const std::string fault = ReadClock(text, limits);
            if (!fault.empty()) throw CLI::ValidationError("--tc", fault);
        },
        "SECONDS+INCREMENT, the clock of each side");
    nodes->excludes(depth)->excludes(clock);
    depth->excludes(clock);
    app.add_option("--timeout", request.TimeoutSeconds,
                   "Seconds after which an engine without a clock is silent")
        ->check(CLI::Range(0.1, 100'000.0))
        ->capture_default_str();
    app.add_flag(
        "--play-out", request.PlaysOut,
        "Play every game to its end, also where both engines agree that it is won (7 pawns for 4 moves "
        "of each) or even (0.1 for 8 moves, from move 40 on)");
}

void AddCourse(CLI::App& app, Request& request) {
    app.add_option("--games", request.Games, "Games, an even number; 200, with --sprt two for each opening")
        ->check(CLI::Range(1, 1'000'000));
    app.add_option("--openings", request.Openings,
                   "File of openings (EPD, or PGN); 500 come with the program")
        ->check(CLI::ExistingFile);
    app.add_option("--plies", request.Plies, "Plies of a PGN game that are its opening")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    app.add_option("--seed", request.Seed, "Number that sets the order of the openings")
        ->capture_default_str();
    app.add_option("--concurrency", request.Concurrency, "Games at once")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    app.add_option("--sprt", request.Sprt,
                   "LOWER UPPER: stop once the games speak for one of these Elo differences")
        ->expected(2);
    app.add_option("--pgn", request.Pgn, "File to which the games are added");
}

MatchPlan MakePlan(const Request& request) {
    MatchPlan plan;
    plan.Limits = request.Limits;
    if (plan.Limits.Depth == 0 && plan.Limits.Nodes == 0) plan.Limits.Nodes = DEFAULT_NODES;
    plan.Limits.IsJudged = !request.PlaysOut;
    const std::string ours = JoinPath(ProgramDirectory(), "match.epd");
    plan.Openings = ReadOpenings(request.Openings.empty() ? ours : request.Openings, request.Plies);
    ShuffleOpenings(plan.Openings, request.Seed);
    const int openings = static_cast<int>(plan.Openings.size());
    if (!request.Sprt.empty()) plan.Sprt = {request.Sprt[0], request.Sprt[1]};
    plan.Pairs = request.Games > 0 ? (request.Games + 1) / 2 : plan.Sprt ? openings : DEFAULT_PAIRS;
    if (plan.Sprt && !(plan.Sprt->Lower < plan.Sprt->Upper)) {
        throw std::runtime_error("--sprt: the first number must be the smaller one");
    }
    // Without a clock the same opening gives the same games, which would count for more than they say.
    if (plan.Pairs > openings && !plan.Limits.HasClock()) {
        throw std::runtime_error("there are " + std::to_string(openings) + " openings, enough for " +
                                 std::to_string(2 * openings) + " games without a clock");
    }
    plan.Concurrency = request.Concurrency;
    plan.PgnPath = request.Pgn;
    if (!request.Pgn.empty() && !std::ofstream(request.Pgn, std::ios::app)) {
        throw std::runtime_error("can't write " + request.Pgn);
    }
    return plan;
}

// Reads the command line and does what it says; returns the exit status.
int Run(int argc, char** argv) {
    Request request;
    request.Concurrency = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 256u));
    CLI::App app("Plays matches between two UCI engines and tells what the results say about their strength.",
                 "kestrovan-match");
    AddPlayer(app, "first", request.Players[0]);
    AddPlayer(app, "second", request.Players[1]);
    AddLimits(app, request);
    AddCourse(app, request);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : USAGE_STATUS;
    }
    WatchInterruptions();
    MatchPlan plan;
    std::optional<MatchPlayer> first, second;
    // What is wrong with a request shows before the first game, at the latest when the engines are tried out.
    try {
        plan = MakePlan(request);
        const int timeoutMs = static_cast<int>(request.TimeoutSeconds * 1000);
        first.emplace(request.Players[0], timeoutMs);
        second.emplace(request.Players[1], timeoutMs);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "kestrovan-match: %s\n", error.what());
        return USAGE_STATUS;
    } catch (const MatchInterrupted&) {
        return 1;
    }
    return PlayMatch(plan, *first, *second) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return RunTool("kestrovan-match", Run, argc, argv);
}
