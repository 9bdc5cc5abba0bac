#include "tools/matchgame.h"

#include <algorithm>

#include "tools/matchjudge.h"

namespace {

// Time beyond the clock that pipes and a busy machine may take.
constexpr int64_t MARGIN_MS = 50;

class MatchClock {
  public:
    explicit MatchClock(const MatchLimits& limits) : limits_(limits), leftMs_{limits.BaseMs, limits.BaseMs} {}

    std::string GoLine() const {
        if (!limits_.HasClock()) {
            return limits_.Depth > 0 ? "go depth " + std::to_string(limits_.Depth)
                                     : "go nodes " + std::to_string(limits_.Nodes);
        }
        const std::string increment = std::to_string(limits_.IncrementMs);
        return "go wtime " + std::to_string(leftMs_[WHITE]) + " btime " + std::to_string(leftMs_[BLACK]) +
               " winc " + increment + " binc " + increment;
    }

    // How long the side may take.
    std::optional<int64_t> LimitMs(int side) const {
        return limits_.HasClock() ? std::optional(leftMs_[side] + MARGIN_MS) : std::nullopt;
    }

    void Charge(int side, int64_t usedMs) {
        leftMs_[side] = std::max<int64_t>(leftMs_[side] - usedMs, 0) + limits_.IncrementMs;
    }

  private:
    const MatchLimits& limits_;
    int64_t leftMs_[2];
};

// The players of a game and what they play by.
struct Players {
    UciEngine* Engines[2];
    const MatchLimits& Limits;
    int Side = WHITE;  // whose turn it is, to get ready or to move
};

void GetReady(Players& players) {
    for (const int side : {WHITE, BLACK}) {
        players.Side = side;
        players.Engines[side]->Greet();
        players.Engines[side]->BeginGame();
    }
}

void SetResult(MatchGame& game, int whitePoints, const std::string& ending) {
    game.WhitePoints = whitePoints;
    game.EndedBy = ending;
}

int PointsWhenLost(int loser) {
    return loser == WHITE ? 0 : 2;
}

// Plays up to the end by the rules or by the judge.
void PlayMoves(MatchGame& game, Players& players) {
    const MatchLimits& limits = players.Limits;
    MatchCourse& course = game.Course;
    MatchClock clock(limits);
    MatchJudge judge;
    while (course.End() == Ending::NONE) {
        const int side = players.Side = course.SideToMove();
        const auto answer =
            players.Engines[side]->Think(course.PositionLine(), clock.GoLine(), clock.LimitMs(side));
        clock.Charge(side, answer.UsedMs);
        if (!course.Play(answer.Move)) throw EngineFault(Fault::ILLEGAL_MOVE, "plays " + answer.Move);
        judge.Look(answer.Score, side, course.Plies());
        if (!limits.IsJudged || course.End() != Ending::NONE) continue;
        if (const auto points = judge.WhitePoints()) return SetResult(game, *points, "judged");
    }
    const bool isMate = course.End() == Ending::MATE;
    SetResult(game, isMate ? PointsWhenLost(course.SideToMove()) : 1,
              EndingNames[static_cast<int>(course.End())]);
}

}  // namespace

MatchGame PlayMatchGame(const Opening& opening, const EngineSetup& white, const EngineSetup& black,
                        const MatchLimits& limits) {
    MatchGame game(opening);
    UciEngine whiteEngine(white), blackEngine(black);
    Players players{{&whiteEngine, &blackEngine}, limits};
    try {
        GetReady(players);
        PlayMoves(game, players);
    } catch (const EngineFault& fault) {
        SetResult(game, PointsWhenLost(players.Side), FaultNames[static_cast<int>(fault.Kind)]);
        game.LostBy = fault.Kind;
        game.FaultReport = std::string(fault.what()) + "\n" + players.Engines[players.Side]->LastLines();
    }
    for (const int side : {WHITE, BLACK}) {
        if (!game.LostBy || side != players.Side) players.Engines[side]->Quit();
    }
    return game;
}
