#include "tuning/gamesample.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "book/pgnreader.h"
#include "core/attackquery.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"

namespace {

// Numbers without visible order, from a seed (Marsaglia's xorshift with Vigna's multiplier).
class Dice {
  public:
    explicit Dice(uint64_t seed) : state_(seed * 2 + 1) {}
    bool FallsOnOneOf(int sides) {
        state_ ^= state_ >> 12;
        state_ ^= state_ << 25;
        state_ ^= state_ >> 27;
        return (state_ * 2685821657736338717u >> 32) % static_cast<uint64_t>(sides) == 0;
    }

  private:
    uint64_t state_;
};

const char* TextOf(GameResult result) {
    switch (result) {
        case GameResult::WHITE_WINS:
            return "1-0";
        case GameResult::BLACK_WINS:
            return "0-1";
        case GameResult::DRAWN:
            return "1/2-1/2";
        default:
            return nullptr;
    }
}

// Takes positions out of a game that has been read.
void SampleGame(const PgnGame& game, const std::string& label, const SamplingOptions& options, Dice& dice,
                SamplingReport& report, const std::function<void(const std::string&)>& take) {
    SetUpStart(game);
    const int last = static_cast<int>(game.Moves.size()) - options.Last;
    for (int ply = 0; ply < last; ++ply) {
        if (ply >= options.Skip && dice.FallsOnOneOf(options.Each) && !IsKingAttacked(board.SideToMove)) {
            take(GetEPD() + label);
            ++report.Positions;
        }
        ReserveHistory(1);
        MakeMove(game.Moves[static_cast<size_t>(ply)], 1);
    }
}

}  // namespace

void SampleGames(const std::string& path, const SamplingOptions& options, SamplingReport& report,
                 const std::function<void(const std::string& line)>& take) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr) throw std::runtime_error("can't read " + path);
    PgnReader reader(file.get());
    Dice dice(options.Seed);
    PgnGame game;
    for (PgnStatus status; (status = reader.Next(game)) != PgnStatus::END;) {
        const char* const result = TextOf(game.Result);
        ++report.Games;
        if (status == PgnStatus::BROKEN) {
            ++report.Broken;
        } else if (result == nullptr) {
            ++report.WithoutResult;
        } else {
            const std::string label =
                std::string(" c9 \"") + result + "\"; id \"game " + std::to_string(game.Number) + "\";";
            SampleGame(game, label, options, dice, report, take);
        }
    }
    if (reader.HasReadError()) throw std::runtime_error("can't read " + path);
}
