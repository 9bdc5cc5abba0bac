#include "tests/process/xboardgame.h"

#include <regex>
#include <stdexcept>
#include <utility>

#include "tests/process/session.h"

namespace {

constexpr int PLY_LIMIT = 700;  // of a game

}  // namespace

bool IsGameResult(const std::string& line) {
    return line == "resign" || std::regex_match(line, std::regex("(1-0|0-1|1/2-1/2) \\{.*\\}"));
}

XboardGame PlayXboardGame(const std::string& setUp, const std::string& firstSettings,
                          const std::string& secondSettings) {
    Session first(firstSettings), second(secondSettings);
    for (Session* engine : {&first, &second}) engine->Ask("xboard\neasy\nnopost\nnew\n" + setUp);
    first.Send("go");
    Session *mover = &first, *waiter = &second;
    XboardGame game;
    for (; game.Plies < PLY_LIMIT; std::swap(mover, waiter)) {
        std::string line = mover->ReadLine();
        for (; !line.starts_with("move "); line = mover->ReadLine()) {
            if (line.starts_with("Illegal")) throw std::runtime_error(line);
            if (!IsGameResult(line)) continue;
            game.Result = line;
            return game;
        }
        waiter->Send(line.substr(5));
        ++game.Plies;
    }
    game.Result = "too long";
    return game;
}
