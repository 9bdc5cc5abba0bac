#include "tools/match.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "tools/interruption.h"
#include "tools/progress.h"

namespace {

constexpr int TOLD_FAULTS = 10;  // told in full; later ones are only counted
constexpr const char* ROLES[2] = {"first", "second"};

std::string Tag(const char* name, std::string value) {
    for (char& letter : value) {
        if (letter == '"' || letter == '\\') letter = '\'';
    }
    return std::string("[") + name + " \"" + value + "\"]\n";
}

std::string Today() {
    char text[16];
    const std::time_t now = std::time(nullptr);
    std::strftime(text, sizeof text, "%Y.%m.%d", std::localtime(&now));
    return text;
}

// A match while it is played. Threads play a pair of games each and then take the next; everything they
// share is below the lock, but for the number of the next pair.
class Match {
  public:
    Match(const MatchPlan& plan, const MatchPlayer& first, const MatchPlayer& second)
        : plan_(plan), players_{&first, &second}, standing_(plan.Sprt) {}

    bool Play();

  private:
    void PlayPairs();
    void PlayPair(int pair);
    MatchGame PlayGame(int pair, int whitePlayer);
    void TellFault(const MatchGame& game, int pair, int loser, int colour);
    void WriteGame(const MatchGame& game, int pair, int whitePlayer);

    const MatchPlan& plan_;
    const MatchPlayer* const players_[2];
    std::atomic<int> nextPair_ = 0;

    std::mutex lock_;
    MatchStanding standing_;
    Progress progress_;
    std::exception_ptr failure_;  // of the first thread that had one
};

bool Match::Play() {
    for (int player = 0; player < 2; ++player) {
        std::printf("%s: %s (%s)\n", ROLES[player], players_[player]->Program().c_str(),
                    players_[player]->Name().c_str());
    }
    std::fflush(stdout);
    std::vector<std::thread> threads;
    for (int i = 0; i < std::min(plan_.Concurrency, plan_.Pairs); ++i)
        threads.emplace_back([this] { PlayPairs(); });
    for (std::thread& thread : threads) thread.join();
    progress_.Clear();
    if (failure_) std::rethrow_exception(failure_);
    const bool isComplete = standing_.Pairs() == plan_.Pairs || standing_.Verdict() != SprtVerdict::OPEN;
    if (!isComplete) std::printf("Interrupted\n");
    std::printf("%s%.1f seconds\n", standing_.Report().c_str(), progress_.Seconds());
    return isComplete && standing_.Faults() == 0;
}

void Match::PlayPairs() {
    try {
        int pair = 0;
        while (!IsInterrupted && (pair = nextPair_++) < plan_.Pairs) PlayPair(pair);
    } catch (const MatchInterrupted&) {
        // Its games don't count.
    } catch (...) {
        const std::lock_guard lock(lock_);
        if (!failure_) failure_ = std::current_exception();
        IsInterrupted = true;
    }
}

void Match::PlayPair(int pair) {
    const MatchGame asWhite = PlayGame(pair, 0), asBlack = PlayGame(pair, 1);
    const std::lock_guard lock(lock_);
    // What ends meanwhile comes too late for a test that has been decided.
    if (standing_.Verdict() != SprtVerdict::OPEN) return;
    standing_.AddPair(asWhite, asBlack);
    if (standing_.Verdict() != SprtVerdict::OPEN) IsInterrupted = true;
    if (progress_.IsDue()) {
        const std::string done =
            std::to_string(2 * standing_.Pairs()) + "/" + std::to_string(2 * plan_.Pairs);
        progress_.Show(done + "  " + standing_.Line());
    }
}

// Plays a game, and tells and writes what is to be told and written of it.
MatchGame Match::PlayGame(int pair, int whitePlayer) {
    const Opening& opening = plan_.Openings[pair % plan_.Openings.size()];
    const EngineSetup &white = players_[whitePlayer]->Setup(), &black = players_[1 - whitePlayer]->Setup();
    MatchGame game = PlayMatchGame(opening, white, black, plan_.Limits);
    const std::lock_guard lock(lock_);
    if (game.LostBy) {
        const int colour = game.WhitePoints == 0 ? WHITE : BLACK;
        TellFault(game, pair, colour == WHITE ? whitePlayer : 1 - whitePlayer, colour);
    }
    if (!plan_.PgnPath.empty()) WriteGame(game, pair, whitePlayer);
    return game;
}

void Match::TellFault(const MatchGame& game, int pair, int loser, int colour) {
    standing_.AddFault(loser, *game.LostBy);
    if (standing_.Faults() > TOLD_FAULTS) return;
    progress_.Clear();
    std::printf("Fault: the %s as %s (pair %d) %s", ROLES[loser], colour == WHITE ? "White" : "Black",
                pair + 1, game.FaultReport.c_str());
    if (standing_.Faults() == TOLD_FAULTS) std::printf("Further faults are only counted\n");
    std::fflush(stdout);
}

void Match::WriteGame(const MatchGame& game, int pair, int whitePlayer) {
    constexpr const char* RESULTS[] = {"0-1", "1/2-1/2", "1-0"};
    const char* const result = RESULTS[game.WhitePoints];
    const auto name = [&](int player) { return players_[player]->Name() + " (" + ROLES[player] + ")"; };
    std::string text = Tag("Event", "Match of engines") + Tag("Site", "?") + Tag("Date", Today()) +
                       Tag("Round", std::to_string(pair + 1) + "." + std::to_string(whitePlayer + 1)) +
                       Tag("White", name(whitePlayer)) + Tag("Black", name(1 - whitePlayer)) +
                       Tag("Result", result);
    if (!game.Course.Fen().empty()) text += Tag("SetUp", "1") + Tag("FEN", game.Course.Fen());
    text += "\n" + game.Course.MoveText() + "{" + game.EndedBy + "} " + result + "\n\n";
    std::FILE* const file = std::fopen(plan_.PgnPath.c_str(), "a");
    const bool isWritten = file != nullptr && std::fputs(text.c_str(), file) >= 0;
    if (file == nullptr || std::fclose(file) != 0 || !isWritten) {
        throw std::runtime_error("can't write " + plan_.PgnPath);
    }
}

}  // namespace

bool PlayMatch(const MatchPlan& plan, const MatchPlayer& first, const MatchPlayer& second) {
    return Match(plan, first, second).Play();
}
