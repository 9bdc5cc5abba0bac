#include <gtest/gtest.h>

#include <string>

#include "tests/process/session.h"

namespace {

// Boards that no game can have, as console lines that set them up.
const std::string SET_UPS[] = {
    "loadfen 8/8/8/8/8/8/8/8 w - -",
    "loadfen kkkkkkkk/kkkkkkkk/8/8/8/8/KKKKKKKK/KKKKKKKK b - -",
    "loadfen 4k3/8/8/8/8/8/8/K3R3 w - -",  // the turn passed
    "loadfen p3k2P/8/8/8/8/8/8/4K3 b - -",
    "loadfen QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ w - -",
    "loadfen qqqqkqqq/8/QQQQQQQQ/qqqqqqqq/QQQQQQQQ/qqqqqqqq/QQQQQQQQ/QQQ1KQQQ b - -",  // too many men
    "loadfen nonsense",
    "edit\nxe1.",   // men taken off a full board
    "edit\n#ke4.",  // a king alone
};

TEST(IllegalPositionTest, IsNamedAtTheConsole) {
    for (const std::string& setUp : SET_UPS) {
        Session engine;
        engine.Ask("force\n" + setUp);
        EXPECT_GE(engine.Ask("brd\nmvd\nmoves\nevl\nperft 1\nperft 2\nbkm").size(), 8u + 1 + 2 + 13) << setUp;
        const std::string answer = Join(engine.Ask("go depth 3"));
        EXPECT_TRUE(answer.starts_with("Error (illegal position): ")) << setUp << ": " << answer;
        EXPECT_EQ(answer.find('\n'), answer.size() - 1) << "one line: " << answer;
        // Everything that a command may do on such a board, and a game after it.
        engine.Ask("white\nblack\ne2e4\ne7e5\nundo\nremove\ne1e2\na2a1q\nhint\nclean\nreload\nwritevalues");
        engine.Ask("new\nforce\n" + setUp);
        EXPECT_TRUE(HasLine(engine.Ask("analyze\n.\nundo\nexit"), "Error (illegal position): ")) << setUp;
        EXPECT_FALSE(HasLine(engine.Ask("new\nforce\ne2e4\ne7e5"), "Illegal")) << setUp;
        EXPECT_EQ(engine.ReadToEnd(), "");
        EXPECT_EQ(engine.WaitForExit(), 0) << setUp;
    }
}

TEST(IllegalPositionTest, IsNamedInUci) {
    for (const std::string& setUp : SET_UPS) {
        UciSession engine;
        const bool isFen = setUp.starts_with("loadfen ");
        engine.Ask(isFen ? "position fen " + setUp.substr(8) + " moves e4e6 nonsense" : setUp);
        for (const char* go : {"go depth 3", "go infinite", "go ponder", "go wtime 100 btime 100"}) {
            const std::string answer = Join(engine.Ask(go));
            EXPECT_TRUE(answer.starts_with("info string illegal position: ")) << setUp << ": " << answer;
            EXPECT_TRUE(answer.ends_with("\nbestmove 0000\n")) << setUp << ": " << answer;
        }
        EXPECT_NE(engine.BestMove("position startpos\ngo depth 2"), "0000") << setUp;
    }
}

}  // namespace
