// Version 2 of the xboard protocol.

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/process/session.h"

namespace {

const std::string HELLO = "xboard\nprotover 2\naccepted usermove\nnew\nrandom\nnopost\n";
const std::string START_ROW = " R N B Q K B N R";

// An engine that an interface of version 2 has greeted.
class XboardSession : public Session {
  public:
    explicit XboardSession(const std::string& settings = "") : Session(settings) {
        Send(HELLO + "ping 0");
        greeting_ = ReadUntil("pong 0");
    }

    // What is printed up to the answer to a ping behind the lines, without that answer.
    std::string Say(const std::string& lines) {
        const std::string number = std::to_string(++pings_);
        Send(lines + "\nping " + number);
        std::vector<std::string> said = ReadUntil("pong " + number);
        said.pop_back();
        return Join(said);
    }

    const std::vector<std::string>& Greeting() const { return greeting_; }

  private:
    std::vector<std::string> greeting_;
    int pings_ = 0;
};

TEST(XboardTest, NamesItsFeatures) {
    const XboardSession engine;
    ASSERT_EQ(engine.Greeting().size(), 2u) << Join(engine.Greeting());
    const std::string line = engine.Greeting()[0] + " ";
    ASSERT_TRUE(line.starts_with("feature ")) << line;
    for (const char* feature :
         {"myname=\"Kestrovan 1.50\"", "setboard=1", "ping=1", "colors=0", "analyze=1", "sigint=0",
          "sigterm=0", "usermove=1", "debug=1", "memory=1", "egt=\"nalimov\"", "done=1"}) {
        EXPECT_NE(line.find(" " + std::string(feature) + " "), std::string::npos) << feature;
    }
    EXPECT_TRUE(line.ends_with(" done=1 ")) << "nothing may follow: " << line;
}

// xboard takes a line with "not found", before it knows the program, for a start that has failed.
TEST(XboardTest, SaysNothingWrongAtTheStart) {
    EXPECT_EQ(WholeOutput(HELLO).find("not found"), std::string::npos);
    EXPECT_NE(WholeOutput("uci\n").find("\nEGTB files not found\nid name "), std::string::npos);
    EXPECT_NE(WholeOutput("").find("\nEGTB files not found\n"), std::string::npos);
    Engine silent(EnginePath());
    silent.ReadUntil("EGTB files not found");
}

TEST(XboardTest, TakesPositionsAndMoves) {
    XboardSession engine("Pondering = off");
    const std::string enPassant = "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq ";
    EXPECT_EQ(engine.Say("force\nsetboard " + enPassant + "d6 0 3\nusermove e5d6"), "");
    EXPECT_EQ(engine.Say("setboard " + enPassant + "d5 0 3\ne5d6"), "") << "the program's own form, too";
    EXPECT_EQ(engine.Say("setboard " + enPassant + "- 0 3\nusermove e5d6"), "Illegal move: e5d6\n");
    EXPECT_EQ(engine.Say("usermove O-O"), "Illegal move: O-O\n");
    EXPECT_EQ(engine.Say("new\nforce\n usermove e2e4\nUsermove  E7E5\nUSERMOVE g1f3 "), "");
    // A game on the board outlives positions that can't be.
    const std::string board = engine.Say("new\nforce\nusermove e2e4\nusermove e7e5\nbrd\nmvd");
    for (const char* text : {"", " ", " nonsense", " 8/8/8/8/8/8/8/8 w - - 0 1", " k7/8/8/8/8/8/8/R6K w"}) {
        EXPECT_EQ(engine.Say("setboard" + std::string(text) + "\nbrd\nmvd"),
                  "tellusererror Illegal position\n" + board)
            << text;
    }
    EXPECT_TRUE(engine.Say("undo\nundo\nbrd").ends_with(START_ROW + "\n"));
    EXPECT_EQ(engine.Say("memory 1\nmemory -5\nmemory 0\nmemory\nmemory 4"), "");
    EXPECT_NE(engine.Say("egtpath nalimov /srv/my tables\negtbstat").find("\ntb_path = /srv/my tables\n"),
              std::string::npos);
    EXPECT_NE(engine.Say("new\nsd 3\nusermove e2e4").find("\nmove "), std::string::npos);
    EXPECT_NE(engine.Say("new\nlevel 40 0:02 0\nusermove e2e4").find("\nmove "), std::string::npos);
}

// A ping that comes while a move is due is answered behind the move; others at once.
TEST(XboardTest, PingsAreAnsweredInTheirTurn) {
    XboardSession engine;
    EXPECT_NE(engine.Say("easy\nsd 8\nusermove e2e4").find("\nmove "), std::string::npos);
    engine.Send("hard\nusermove d2d4");
    engine.ReadUntil("Hint: ");
    EXPECT_EQ(engine.Say(""), "") << "pondering goes on";
    EXPECT_TRUE(engine.Say("hint").starts_with("Hint: "));
    EXPECT_EQ(engine.Say("nonsense\nname Somebody\ndraw\n"), "");
    EXPECT_TRUE(engine.Say(".").starts_with("stat01: ")) << "it is still pondering";
    EXPECT_EQ(engine.Say("new\nforce\nanalyze"), "");
    EXPECT_EQ(engine.Say("usermove e2e4\nusermove e2e4"), "Illegal move: e2e4\n");
    EXPECT_TRUE(engine.Say("time 100\notim 100\n.").starts_with("stat01: "));
    EXPECT_EQ(engine.Say("g8f6\ng1f3\nf6g8\nf3g1\ng8f6\ng1f3\nf6g8\nf3g1"), "") << "nobody claims a draw";
    EXPECT_TRUE(engine.Say("exit\nnew\nforce\ne2e4\nundo\nbrd").ends_with(START_ROW + "\n"));
}

// Whatever the program is doing, these lines are carried out in order, and a game can follow.
TEST(XboardTest, CommandsTakeEffectInAnyState) {
    const struct {
        std::string Name, Lines;
    } states[] = {
        {"waiting", "force\nusermove e2e4\nusermove e7e5"},
        {"thinking", "sd 60\nforce\nusermove e2e4\nusermove e7e5\ngo"},
        {"pondering", "sd 4\nusermove e2e4"},
        {"analysing", "force\nusermove e2e4\nusermove e7e5\nanalyze"},
    };
    const struct {
        std::string Lines, Board;  // empty: whatever it is
    } rows[] = {
        {"new", START_ROW},
        {"undo\nundo\nundo", START_ROW},
        {"remove", START_ROW},
        {"result 1-0 {White mates}\nforce\nsetboard 4k3/8/8/8/8/8/8/R3K3 w Q - 0 1", " R . . . K . . ."},
        {"setboard 4k3/8/8/8/8/8/8/R3K3 w Q - 0 1", " R . . . K . . ."},
        {"edit\n#\nKe1\nRa1\nc\nKe8\n.", " R . . . K . . ."},
        {"level 40 5 0\ntime 100\notim 100\nnew", START_ROW},
        {"ping 77\nname x\nremove", START_ROW},
    };
    for (const auto& [state, before] : states) {
        for (const auto& [lines, board] : rows) {
            XboardSession engine;
            engine.Send(before);
            if (state == "pondering") engine.ReadUntil("Hint: ");
            if (state != "pondering") std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const std::string leave = state == "analysing" ? "\nexit" : "";
            std::string said = engine.Say(lines + leave + "\nforce\nbrd");
            EXPECT_TRUE(said.ends_with(board + "\n")) << state << ": " << lines << "\n" << said;
            EXPECT_EQ(said.find("\nmove "), std::string::npos) << state << ": " << lines << "\n" << said;
            said = engine.Say("new\neasy\nsd 2\nusermove d2d4");
            EXPECT_NE(said.find("\nmove "), std::string::npos) << state << ": " << lines << "\n" << said;
        }
        XboardSession engine;
        engine.Send(before + "\nquit");
        EXPECT_EQ(engine.WaitForExit(), 0) << state;
    }
}

// To an interface of version 2 an announced draw is a claim.
TEST(XboardTest, ClaimsDrawsByTheRules) {
    const std::string start = "easy\nsd 3\nforce\n", claim = "1/2-1/2 {Draw by repetition}\n";
    const std::string back = "g1f3\ng8f6\nf3g1\nf6g8\n";
    const std::string once = start + back, twice = start + back + back;
    XboardSession engine;
    EXPECT_EQ(engine.Say(once + "go").find(claim), std::string::npos);
    EXPECT_EQ(engine.Say("new\n" + twice + "go").find(claim), 0u);
    EXPECT_NE(Transcript("new\nxboard\n" + once + "go").find(claim), std::string::npos)
        << "version 1 is told what the search takes for a draw";
    std::string fifty = start;
    for (int i = 0; i < 25; ++i) fifty += back;
    const std::string both = claim + "1/2-1/2 {Draw by the 50-moves rule}\n";
    EXPECT_EQ(engine.Say("new\n" + fifty + "go").find(both), 0u);
    EXPECT_EQ(Transcript("uci\n" + fifty + "go depth 3").find("1/2"), std::string::npos) << "silent";
    // A mate with the hundredth ply ends the game before the draw.
    std::string mate = "new\n" + start + "setboard 7k/8/6K1/8/8/8/8/R7 b - - 0 1\nh8g8\na1a2\n";
    for (int i = 0; i < 24; ++i) mate += "g8h8\na2a1\nh8g8\na1a2\n";
    EXPECT_EQ(engine.Say(mate + "g8h8\na2a8\ngo"), "1-0 {White mates}\n");
}

TEST(XboardTest, TakesADrawWhenItStandsWorse) {
    const std::string behind = "setboard 4k3/pppp4/8/8/8/8/PPPP4/3QK3 b - -\n";
    const std::string ahead = "setboard 4k3/pppp4/8/8/8/8/PPPP4/3QK3 w - -\n";
    XboardSession engine;
    EXPECT_EQ(engine.Say("draw"), "") << "before any thought";
    EXPECT_TRUE(engine.Say("easy\nsd 5\nforce\n" + behind + "go\ndraw").ends_with("\noffer draw\n"));
    EXPECT_FALSE(engine.Say("force\n" + ahead + "go\ndraw").ends_with("\noffer draw\n"));
}

}  // namespace
