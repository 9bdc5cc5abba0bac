#include <gtest/gtest.h>

#include <string>

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

TEST(PonderTest, AHitIsAnswered) {
    Ponderer engine;
    ASSERT_EQ(engine.Hint.size(), 4u) << engine.Hint;
    for (int i = 0; i < 3; ++i) {
        engine.Send(engine.Hint);
        EXPECT_FALSE(HasLine(engine.ReadUntil("move "), "Illegal"));
        engine.Hint = engine.ReadHint();
    }
}

TEST(PonderTest, AMissIsAnsweredOnTheRealBoard) {
    Ponderer engine;
    engine.Send(engine.OtherMove());
    EXPECT_FALSE(HasLine(engine.ReadUntil("move "), "Illegal"));
    engine.ReadHint();
    // The game so far: four moves, the last of them Black's.
    Session fresh;
    EXPECT_EQ(Join(engine.Ask("force\nremove\nremove\nbrd")), Join(fresh.Ask("brd")));
}

TEST(PonderTest, AnIllegalMoveIsRefused) {
    Ponderer engine;
    engine.Send("e4e6");
    EXPECT_EQ(engine.ReadUntil("Illegal").back(), "Illegal move: e4e6");
    engine.Send(engine.OtherMove());
    EXPECT_FALSE(HasLine(engine.ReadUntil("move "), "Illegal"));
}

TEST(PonderTest, OtherLinesEndItAndAreInterpreted) {
    Session fresh;
    const std::string start = Join(fresh.Ask("brd")), moved = Join(fresh.Ask("force\ne2e4\nbrd"));
    const struct {
        const char* Lines;
        std::string Answer;
    } rows[] = {
        {"undo\nbrd", moved},
        {"force\nundo\nbrd", moved},
        {"new\nbrd", start},
        {"remove\nbrd", start},
        {"xboard\nremove\nbrd", start},
        {"?\nremove\nbrd", start},
        {"result 1-0\nremove\nbrd", start},
        {"easy\nremove\nbrd", start},
        {"evl2\nundo\nundo\nbrd", start},
        {"time 5\notim 5\nremove\nbrd", start},
        {"hard\nremove\nbrd", start},
    };
    for (const auto& [lines, answer] : rows) {
        Ponderer engine;
        engine.Send(lines);
        const std::string output = Join(engine.ReadUntil(" R N B Q K B N R"));
        EXPECT_TRUE(output.ends_with(answer)) << lines << "\n" << output;
        EXPECT_EQ(engine.ReadToEnd(), "") << lines;
        EXPECT_EQ(engine.WaitForExit(), 0) << lines;
    }
}

TEST(PonderTest, AnswersQuestionsWithoutEnding) {
    Ponderer engine;
    EXPECT_TRUE(HasLine(engine.Ask("."), "stat01: "));
    engine.Send(engine.Hint);
    engine.ReadUntil("move ");
}

TEST(PonderTest, IsSwitchedOnAndOff) {
    const struct {
        const char *Settings, *Lines;
        bool Ponders;
    } rows[] = {
        {"Pondering = on", "", true},
        {"Pondering = on", "easy\n", false},
        {"Pondering = on", "easy\nhard\n", true},
        {"Pondering = off", "hard\n", false},
        {"Pondering = on", "easy\nxboard\n", true},
        {"Pondering = off", "xboard\n", false},
        {"Pondering = on", "uci\n", false},
        {"Pondering = on", "uci\nxboard\n", true},
    };
    for (const auto& [settings, lines, ponders] : rows) {
        Session engine(settings);
        engine.Send(std::string(lines) + "sd 3\ne2e4");
        // The end of input must not come before the prediction.
        const bool isUci = std::string(lines) == "uci\n";
        engine.ReadUntil(isUci ? "bestmove " : "move ");
        if (ponders) {
            engine.ReadUntil("Hint: ");
        } else {
            EXPECT_TRUE(engine.Ask("").empty()) << settings << " " << lines;
        }
    }
}

TEST(AnalyzeTest, ObeysItsLines) {
    Session fresh;
    const std::string start = Join(fresh.Ask("brd")), moved = Join(fresh.Ask("force\ne2e4\nbrd"));
    const struct {
        const char* Lines;
        std::string Answer;
    } rows[] = {
        {"exit\nbrd", start},
        {"e2e4\nexit\nbrd", moved},
        {"e2e4\ne7e5\nundo\nundo\nundo\nexit\nbrd", start},
        {"e2e4\ne7e5\nnew\nexit\nbrd", start},
        {"e2e4\ne2e4\nexit\nbrd", moved},
        {"nopost\nhard\nsd 3\nexit\nbrd", start},
        {"e2e4\nbrd\nexit\nundo", moved},
    };
    for (const auto& [lines, answer] : rows) {
        Session engine("Pondering = off");
        engine.Send(std::string("nopost\nanalyze\n") + lines);
        const std::string output = Join(engine.ReadUntil(" R N B Q K B N R"));
        EXPECT_TRUE(output.ends_with(answer)) << lines << "\n" << output;
        EXPECT_EQ(output.find("Illegal move: e2e4\n") == 0, std::string(lines).find("e2e4\ne2e4") == 0)
            << output;
        EXPECT_EQ(engine.ReadToEnd(), "") << lines;
        EXPECT_EQ(engine.WaitForExit(), 0) << lines;
    }
}

TEST(AnalyzeTest, AnswersWhileSearching) {
    Session engine;
    engine.Send("analyze\n.");
    engine.ReadUntil("stat01: ");
    engine.Ask("");
    engine.Send("exit\nmvd");
    engine.ReadUntil("castling flags = 15");
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
    EXPECT_EQ(engine.ReadToEnd(), "");
    EXPECT_EQ(engine.WaitForExit(), 0);
}

}  // namespace
