#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

constexpr size_t HINT_START = 6;  // behind "Hint: "

// A console engine that ponders; its prediction has been read.
class Ponderer : public Session {
  public:
    Ponderer() {
        Send("nopost\nsd 6\ne2e4");
        ReadUntil("move ");
        Hint = ReadHint();
    }
    std::string ReadHint() { return ReadUntil("Hint: ").back().substr(HINT_START); }
    // A legal move of White's that is not the one expected.
    std::string OtherMove() const { return Hint == "a2a3" ? "h2h3" : "a2a3"; }

    std::string Hint;
};

TEST(PonderTest, HitsMissesAndIllegalMovesAreAnswered) {
    Ponderer engine;
    ASSERT_EQ(engine.Hint.size(), 4u) << engine.Hint;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(HasLine(engine.Ask("."), "stat01: ")) << "a question doesn't end it";
        engine.Send(engine.Hint);
        EXPECT_FALSE(HasLine(engine.ReadUntil("move "), "Illegal"));
        engine.Hint = engine.ReadHint();
    }
    Ponderer other;
    other.Send("e4e6");
    EXPECT_EQ(other.ReadUntil("Illegal").back(), "Illegal move: e4e6");
    other.Send(other.OtherMove());
    EXPECT_FALSE(HasLine(other.ReadUntil("move "), "Illegal"));
    other.ReadHint();
    // The game so far: four moves, the last of them Black's.
    Session fresh;
    EXPECT_EQ(Join(other.Ask("force\nremove\nremove\nbrd")), Join(fresh.Ask("brd")));
}

// What ends a mode or a search; the board is shown behind it.
TEST(PonderTest, LinesEndWhatRunsAndAreInterpreted) {
    Session fresh;
    const std::string start = Join(fresh.Ask("brd")), moved = Join(fresh.Ask("force\ne2e4\nbrd"));
    const std::string ponder = "nopost\nsd 6\ne2e4", analyze = "nopost\nanalyze", search = "e2e4\nsd 50\ngo";
    const struct {
        const std::string& Before;
        std::vector<std::string> Lines;
        std::string Board;
    } rows[] = {
        {ponder, {"undo", "force\nundo"}, moved},
        {ponder, {"new", "remove", "xboard\nremove", "?\nremove", "result 1-0\nremove"}, start},
        {ponder, {"easy\nremove", "evl2\nundo\nundo", "time 5\notim 5\nremove"}, start},
        {analyze, {"exit", "e2e4\ne7e5\nundo\nundo\nundo\nexit", "e2e4\ne7e5\nnew\nexit"}, start},
        {analyze, {"nopost\nhard\nsd 3\nexit"}, start},
        {analyze, {"e2e4\nexit", "e2e4", "e2e4\ne2e4\nexit"}, moved},
        {search, {"new", "undo\nforce", "result 1-0 {test}\nundo"}, start},
        {search, {"force", "result *"}, moved},
    };
    for (const auto& [before, lines, board] : rows) {
        for (const std::string& line : lines) {
            Session engine(&before == &ponder ? "" : "Pondering = off");
            if (&before == &search) engine.Ask("nopost\nforce");
            engine.Send(before);
            if (&before == &ponder) engine.ReadUntil("Hint: ");
            engine.Send(line + "\nbrd");
            const std::string output = Join(engine.ReadUntil(" R N B Q K B N R"));
            const bool isIllegal = line.starts_with("e2e4\ne2e4");
            EXPECT_TRUE(output.ends_with(board)) << before << "\n" << line << "\n" << output;
            EXPECT_EQ(output.find("Illegal move: e2e4\n") == 0, isIllegal) << output;
            EXPECT_EQ(output.find("move "), std::string::npos) << "no move is played: " << output;
            EXPECT_EQ(engine.ReadToEnd(), "") << line;
            EXPECT_EQ(engine.WaitForExit(), 0) << line;
        }
    }
}

TEST(PonderTest, IsSwitchedOnAndOff) {
    const struct {
        const char *Settings, *Lines;
        bool Ponders;
    } rows[] = {
        {"Pondering = on", "easy\n", false},
        {"Pondering = on", "easy\nhard\n", true},
        {"Pondering = off", "hard\n", false},
        {"Pondering = on", "uci\n", false},
    };
    for (const auto& [settings, lines, ponders] : rows) {
        Session engine(settings);
        engine.Send(std::string(lines) + "sd 3\ne2e4");
        engine.ReadUntil(std::string(lines) == "uci\n" ? "bestmove " : "move ");
        if (ponders) {
            engine.ReadUntil("Hint: ");
        } else {
            EXPECT_TRUE(engine.Ask("").empty()) << settings << " " << lines;
        }
    }
}

// Where there is nothing to search the mode waits for its lines.
TEST(AnalyzeTest, WaitsWhenTheGameIsOver) {
    Session engine;
    engine.Send("nopost\nloadfen R5k1/5ppp/8/8/8/8/8/6K1 b - -\nanalyze\n.");
    EXPECT_EQ(engine.ReadLine(), "1-0 {White mates}");
    EXPECT_EQ(engine.ReadLine(), "stat01: 0 0 0 0 0");
    engine.Send("g8h8");
    engine.ReadUntil("Illegal move: g8h8");
    engine.Send("exit\nmvd");
    engine.ReadUntil("castling flags = 0");
}

}  // namespace
