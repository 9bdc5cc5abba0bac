#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

std::string ReadHint(Engine& engine) {
    constexpr size_t HINT_START = 6;  // behind "Hint: "
    return engine.ReadUntil("Hint: ").back().substr(HINT_START);
}

TEST(PonderTest, HitsMissesAndIllegalMovesAreAnswered) {
    Session engine, other, fresh;
    engine.Send("nopost\nsd 6\ne2e4");
    for (int i = 0; i < 3; ++i) {
        const std::string hint = ReadHint(engine);
        ASSERT_EQ(hint.size(), 4u) << hint;
        EXPECT_TRUE(HasLine(engine.Ask("."), "stat01: ")) << "a question doesn't end it";
        engine.Send(hint);
        EXPECT_FALSE(HasLine(engine.ReadUntil("move "), "Illegal"));
    }
    other.Send("nopost\nsd 6\ne2e4");
    const std::string hint = ReadHint(other);
    other.Send("e4e6");
    EXPECT_EQ(other.ReadUntil("Illegal").back(), "Illegal move: e4e6");
    other.Send(hint == "a2a3" ? "h2h3" : "a2a3");
    EXPECT_FALSE(HasLine(other.ReadUntil("move "), "Illegal"));
    ReadHint(other);
    // The game so far: four moves, the last of them Black's.
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
        {ponder,
         {"new", "remove", "?\nremove", "result 1-0\nremove", "easy\nremove", "time 5\notim 5\nremove"},
         start},
        {analyze, {"e2e4\ne7e5\nundo\nundo\nundo\nexit", "e2e4\nnew\nexit", "hard\nsd 3\nexit"}, start},
        {analyze, {"e2e4", "e2e4\ne2e4\nexit"}, moved},
        {search, {"new", "undo\nforce", "result 1-0 {test}\nundo"}, start},
        {search, {"force"}, moved},
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
    for (const std::string line : {"easy", "uci", "hard"}) {
        Session engine(line == "hard" ? "Pondering = off" : "");
        engine.Send(line + "\nsd 3\ne2e4");
        engine.ReadUntil(line == "uci" ? "bestmove " : "move ");
        EXPECT_TRUE(engine.Ask("").empty()) << line;
    }
    Session engine;
    engine.Send("easy\nhard\nsd 3\ne2e4");
    engine.ReadUntil("Hint: ");
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
