#include "tools/matchgame.h"

#include "tools/matchclock.h"
#include "tools/matchjudge.h"

namespace {

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
