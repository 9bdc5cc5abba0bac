// kestrovan-egtb from outside, and the engine with the tables that it makes.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>

#include "core/types.h"
#include "tests/process/session.h"
#include "tests/process/tooltest.h"
#include "tests/process/xboardgame.h"

namespace {

// Instrumented programs take many times as long: they make smaller classes.
#ifdef KESTROVAN_SANITIZED
constexpr bool IS_SLOW = true;
#else
constexpr bool IS_SLOW = false;
#endif

class EgtbToolTest : public ToolTest {
  protected:
    EgtbToolTest() : ToolTest(KESTROVAN_EGTB) {}

    bool Matches(const std::string& pattern) const { return std::regex_match(output_, std::regex(pattern)); }
};

TEST_F(EgtbToolTest, BuildsChecksAndShowsTables) {
    ASSERT_EQ(Run("build KPvK --threads 2 --verify"), 0) << errors_;
    EXPECT_TRUE(
        Matches("5 classes, 5 to be made\n(k[qrbnp]k .* MB .* seconds, verified\n){5}5 classes made: .*\n"))
        << output_;
    EXPECT_EQ(directory_.ReadFile("tablebases/kqk.nbw").size(), 25629u);
    EXPECT_EQ(Run("build 3"), 0);
    EXPECT_TRUE(Says("5 classes, 0 to be made\n")) << output_;
    EXPECT_EQ(Run("verify KPK kqk"), 0);
    EXPECT_TRUE(Matches("kpk     good, .*\nkqk     good, .*\n")) << output_;
    EXPECT_EQ(Run("stats kpk"), 0);
    for (const char* line :
         {"White to move: 163328 positions, wins 124960 (76.51%), draws 38368 (23.49%)",
          "  longest win: mate in 28, 6 positions: 8/8/8/1k6/8/", "mutual zugzwangs: 80 that White"}) {
        EXPECT_TRUE(Says(line)) << line << " in\n" << output_;
    }
    EXPECT_EQ(Run("probe '8/8/8/8/8/6k1/4p3/4K3 w - - 0 1'"), 0);
    EXPECT_EQ(output_, "draw\n  Kxe2    draw\n  Kd2     loses, mated in 9\n");
    EXPECT_EQ(Run("probe '4k3/4P3/4K3/8/8/8/8/8 w - -'"), 0);
    EXPECT_TRUE(Matches("wins, mate in \\d+\n(  K[df]6 +(wins|draw).*\n|  K[def]5 .*\n)+")) << output_;
    EXPECT_EQ(Run("list"), 0);
    EXPECT_TRUE(Says("tablebases/kpk.nbb registered\n") && Says("\n3 piece EGTB files found\n")) << output_;

    EXPECT_EQ(Run("verify"), 0);
    EXPECT_EQ(std::count(output_.begin(), output_.end(), '\n'), 5) << output_;
    // Whatever the case of their letters, they are there.
    EXPECT_EQ(Run("build kqk", "output", "mv tablebases/kqk.nbw tablebases/KQK.NBW"), 0);
    EXPECT_TRUE(Says("1 classes, 0 to be made\n")) << output_;

    // What is wrong in a file is found.
    std::string table = directory_.ReadFile("tablebases/krk.nbb");
    table[5000] = static_cast<char>(table[5000] + 1);
    directory_.WriteFile("tablebases/krk.nbb", table);
    EXPECT_EQ(Run("verify krk"), 1);
    EXPECT_TRUE(Says("krk     ") && Says("wrong; the first one: ")) << output_;
    directory_.WriteFile("tablebases/krk.nbb", table.substr(1));
    ExpectRefusal("verify krk", "has not the length of its class");
    EXPECT_EQ(Run("build krk"), 0);
    EXPECT_TRUE(Says("2 classes, 1 to be made\n") || Says("1 classes, 1 to be made\n")) << output_;
    EXPECT_EQ(Run("verify krk"), 0);
}

TEST_F(EgtbToolTest, RefusesWhatItCannotDo) {
    ExpectRefusal("build kxk", "kxk is no class");
    ExpectRefusal("build kqqqqk", "kqqqqk is no class");
    ExpectRefusal("build krkkn", "krkkn is no class");
    ExpectRefusal("build vkrkn", "vkrkn is no class");
    ExpectRefusal("build krrbkq", "too large to be made");
    ExpectRefusal("stats", "there are no tables");
    ExpectRefusal("stats kqk", "can't be opened");
    ExpectRefusal("probe 'nonsense'", "illegal position");
    ExpectRefusal("", "subcommand");
    EXPECT_EQ(Run("probe '8/8/8/8/8/2k5/8/KR6 w - -'"), 1);
    EXPECT_TRUE(Says("don't have this position")) << output_;
    EXPECT_EQ(Run("build krbkn --memory 100"), 1);
    EXPECT_NE(errors_.find("MB of memory"), std::string::npos) << errors_;
    directory_.WriteFile("file", "");
    ExpectRefusal("build 3 -d file", "not a directory");
    ExpectRefusal("list -d 'one, two'", "would not be one directory");
    EXPECT_EQ(Run("list"), 1);
    EXPECT_TRUE(Says("EGTB files not found")) << output_;
}

TEST_F(EgtbToolTest, AnInterruptedBuildGoesOn) {
    ASSERT_EQ(Run("build 3"), 0) << errors_;
    // What it says first comes before seconds of work, and after it listens to interruptions.
    const std::string name = IS_SLOW ? "kpk" : "kqkr";
    if (IS_SLOW) std::filesystem::remove(directory_.FilePath("tablebases/kpk.nbw"));
    const std::string interrupted =
        "{ '" KESTROVAN_EGTB "' build " + name +
        " --threads 1 >first & while [ ! -s first ]; do sleep 0.05; done; sleep 0.2; kill -INT $!; "
        "wait $!; echo $? >status; } 2>/dev/null";
    ASSERT_EQ(Run("build " + name, "output", interrupted), 0) << errors_;
    EXPECT_NE(directory_.ReadFile("first").find("Stopped in " + name + ", 1 classes left"), std::string::npos)
        << directory_.ReadFile("first");
    EXPECT_EQ(directory_.ReadFile("status"), "1\n");
    EXPECT_TRUE(Says(name + " ")) << output_;
    EXPECT_EQ(directory_.ReadFile("tablebases/" + name + ".work"), "");
    EXPECT_EQ(Run("verify " + name), 0) << output_;
}

// With the tables the stronger side mates in exactly the number of moves against the best defence, and never
// later against another; what is a draw stays one.
TEST_F(EgtbToolTest, TheEnginePlaysTheEndingsPerfectly) {
    ASSERT_EQ(Run(IS_SLOW ? "build krkn" : "build kqkr kbnk krkn"), 0) << errors_;
    const std::string fight = "ResignValue = 32767\n";
    const std::string tables = fight + "EGTBPath = " + directory_.Path() + "/tablebases\n";
    {
        Session engine(tables);
        EXPECT_TRUE(HasLine(engine.Ask("egtbstat"), "4 piece EGTB files found"));
    }
    const struct {
        const char *Fen, *Limit;
        int Moves;
        const char* Result;
    } wins[] = {
        {"8/8/8/8/4k3/Q7/K5r1/8 w - -", "sd 1", 35, "1-0 {White mates}"},
        {"1r6/8/8/8/8/8/7Q/k1K5 b - -", "sd 4", 19, "0-1 {Black mates}"},
        {"8/8/8/6B1/8/5k2/8/2K4N w - -", "level 40 0:2 0", 33, "1-0 {White mates}"},
        {"8/2R5/8/8/7k/3K4/8/4n3 w - -", "sd 4", 40, "1-0 {White mates}"},
    };
    for (const auto& win : wins) {
        if (IS_SLOW && win.Moves != 40) continue;
        const std::string setUp = std::string("loadfen ") + win.Fen + "\n" + win.Limit;
        const XboardGame perfect = PlayXboardGame(setUp, tables, tables);
        EXPECT_EQ(perfect.Result, win.Result) << win.Fen;
        EXPECT_EQ(perfect.Plies, 2 * win.Moves - 1) << win.Fen;
        const XboardGame other = PlayXboardGame(setUp, tables, fight);
        EXPECT_EQ(other.Result, win.Result) << win.Fen;
        EXPECT_LE(other.Plies, 2 * win.Moves - 1) << win.Fen;
    }
    // The knight holds out; without tables it may not.
    const std::string drawn[] = {"loadfen 8/8/3kn3/8/8/8/8/KR6 w - -\nsd 4",
                                 "loadfen 8/8/3kn3/8/8/8/8/KR6 b - -\nsd 4"};
    const auto isDrawn = [](const XboardGame& game) { return game.Result.starts_with("1/2-1/2"); };
    for (const std::string& setUp : drawn) EXPECT_TRUE(isDrawn(PlayXboardGame(setUp, tables, tables)));
    EXPECT_TRUE(isDrawn(PlayXboardGame(drawn[WHITE], fight, tables)));
    EXPECT_TRUE(isDrawn(PlayXboardGame(drawn[BLACK], tables, fight)));
}

}  // namespace
