// Speaks both dialects to one engine at once: commands in random order and at random times, in the middle of
// searches as well. Every few seconds and at the end the engine must still answer and play a legal move.
//
//     kestrovan_torture <engine> <seconds> <seed>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/process/engine.h"

namespace {

// What stands behind a % is filled in: %n a number, %t a time, %m a move, %p a position.
const char* const COMMANDS[] = {
    // both
    "%m", "%m", "%m", "isready", "stop", "", "nonsense", "%n%n %m", "?",
    // xboard and the console
    "usermove %m", "usermove %m", "usermove %m", "usermove", "go", "go", "?", ".", "force", "new", "new",
    "undo", "remove", "result 1-0 {x}", "result *", "post", "nopost", "easy", "hard", "analyze", "exit",
    "exit", "ping %n", "ping %n", "setboard %p", "setboard", "level 40 0:05 0", "level 0 0:01 1",
    "level 0 1 0", "time %t", "time %t", "otim %t", "st 1", "sd %n", "hint", "draw", "random", "computer",
    "memory %n", "name x", "rating 1 %n", "variant normal", "accepted ping", "protover 2", "protover %n",
    "xboard", "white", "black", "edit\n#\nKe1\nRa1\nc\nKe8\n.", "edit\nxe2.", "moves", "brd", "evl",
    "perft 2", "loadfen %p", "reset", "clean", "reload", "demo", "help\n", "bkm", "mvd", "egtbstat", "c1 %n",
    "writevalues", "fritz", "egtpath nalimov /none", "epdevl values.txt", "pgneval values.txt out.csv",
    // UCI
    "uci", "uci", "ucinewgame", "position startpos", "position startpos moves %m %m %m", "position fen %p",
    "position fen %p moves %m %m", "go depth %n", "go movetime %t", "go infinite", "go infinite",
    "go ponder wtime %t btime %t", "go ponder movetime %t", "go ponder",
    "go wtime %t btime %t winc 10 binc 5", "go wtime %t btime %t movestogo %n", "go nodes 20000",
    "go mate %n", "go searchmoves %m %m", "ponderhit", "ponderhit", "stop", "stop",
    "setoption name MultiPV value %n", "setoption name Hash value %n", "setoption name PawnHash value %n",
    "setoption name Clear Hash", "setoption name OwnBook value false", "setoption name Tropism value %n",
    "debug on", "debug off", "register later"};

const char* const MOVES[] = {"e2e4", "e7e5",  "g1f3",  "b8c6",  "f1b5", "a7a6", "d2d4",
                             "d7d5", "c2c4",  "e7e6",  "b1c3",  "g8f6", "e1g1", "e8g8",
                             "e4e5", "a7a8q", "a2a1n", "h7h8x", "e1e2", "a1a8"};
const char* const TIMES[] = {"0", "1", "3", "20", "100", "400", "-50", "-15", "2147483647", "99999999999"};
const char* const POSITIONS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 3",
    "8/P6k/8/8/8/8/p6K/8 w - - 0 1",
    "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1",
    "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",
    "4k3/8/8/8/8/8/8/4KB2 w - - 98 90",
    "8/8/8/8/8/8/8/8 w - - 0 1",
    "kkkkkkkk/8/8/8/8/8/8/KKKKKKKK b - - 0 1",
};

std::mt19937 Random;

// What has been said since the last check, for the report of a fault.
std::string Said;

size_t Below(size_t limit) {
    return Random() % limit;
}

template <size_t size>
std::string Pick(const char* const (&texts)[size]) {
    return texts[Below(size)];
}

std::string MakeCommand() {
    std::string text = Pick(COMMANDS);
    for (size_t place = 0; (place = text.find('%', place)) != std::string::npos;) {
        const char kind = text[place + 1];
        const std::string part = kind == 'n'   ? std::to_string(Below(7))
                                 : kind == 't' ? Pick(TIMES)
                                 : kind == 'm' ? Pick(MOVES)
                                               : Pick(POSITIONS);
        text.replace(place, 2, part);
        place += part.size();
    }
    return text;
}

// Leads the engine out of whatever it is doing and has it play a move, which the referee must accept.
void Check(Engine& engine, Engine& referee) {
    // A page of help and the board editor take lines of their own; lines that have been kept may search.
    engine.Send("\n.");
    for (int i = 0; i < 8; ++i) engine.Ask("exit\nforce\nstop");
    engine.Send("force\nping 4711");
    engine.ReadUntil("pong 4711");
    engine.Send("uci\nsetoption name MultiPV value 1\nposition startpos moves e2e4\ngo movetime 30");
    const std::string answer = engine.ReadUntil("bestmove ").back();
    const std::string move = answer.substr(9, answer.find(' ', 9) - 9);
    referee.Ask("new\nforce\ne2e4");
    if (!referee.Ask(move).empty()) throw std::runtime_error("not a legal move: " + answer);
    if (!engine.Ask("stop\nponderhit").empty()) throw std::runtime_error("more than an answer");
}

void Torture(const std::string& path, int seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr int COMMANDS_PER_CHECK = 150;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
    Engine engine(path), referee(path);
    referee.Ask("");
    long commands = 0, checks = 0;
    do {
        for (int i = 0; i < COMMANDS_PER_CHECK; ++i, ++commands) {
            const std::string command = MakeCommand();
            Said += command + "\n";
            engine.Send(command);
            // Mostly at once behind each other, at times after a search has got under way or has ended.
            if (Below(3) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(Below(60)));
        }
        Check(engine, referee);
        Said.clear();
        ++checks;
    } while (Clock::now() < end);
    engine.Send("quit");
    const int status = engine.WaitForExit();
    if (status != 0) throw std::runtime_error("exit status " + std::to_string(status));
    std::printf("%ld commands, %ld times a legal move\n", commands, checks);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <engine> <seconds> <seed>\n", argv[0]);
        return 2;
    }
    Random.seed(static_cast<unsigned>(std::atoi(argv[3])));
    try {
        Torture(std::filesystem::absolute(argv[1]), std::atoi(argv[2]));
    } catch (const std::exception& fault) {
        std::printf("%s%s\n", Said.c_str(), std::string(fault.what()).substr(0, 2000).c_str());
        return 1;
    }
    return 0;
}
