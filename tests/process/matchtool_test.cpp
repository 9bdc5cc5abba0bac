// kestrovan-match from outside.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "tests/process/tooltest.h"

namespace {

constexpr char ENGINE[] = "'" KESTROVAN_ENGINE "' ";
constexpr char TWICE[] = "'" KESTROVAN_ENGINE "' '" KESTROVAN_ENGINE "' ";

class MatchToolTest : public ToolTest {
  protected:
    MatchToolTest() : ToolTest(KESTROVAN_MATCH) {}

    // A program that answers as a script says: a "case" of the lines that it reads.
    void WriteEngine(const std::string& name, const std::string& cases) {
        directory_.WriteFile(name, "#!/bin/sh\nwhile read -r line; do case $line in\n" + cases +
                                       "\nuci) echo id name Script; echo uciok;;\nisready) echo readyok;;\n"
                                       "quit) exit;;\nesac; done\n");
        chmod(directory_.FilePath(name).c_str(), 0755);
    }

    // Has the engine play against such a program, which must lose all games by the fault.
    void ExpectFault(const std::string& cases, const std::string& fault, const std::string& told,
                     const std::string& limit = "--depth 1") {
        WriteEngine("script", cases);
        EXPECT_EQ(Run(std::string(ENGINE) + "./script --games 2 --timeout 2 --play-out " + limit), 1)
            << errors_;
        EXPECT_TRUE(Says("2 games: +2 -0 =0, 100.0 %, Elo beyond measure\n")) << output_;
        EXPECT_TRUE(Says("\nEndings: " + fault + " 2\n")) << output_;
        EXPECT_TRUE(std::regex_search(output_, std::regex("Faults of the second:.* " + fault + " 2")))
            << output_;
        EXPECT_TRUE(Says("Fault: the second as Black (pair 1) " + told)) << told << " in\n" << output_;
    }

    // What the last run has told, without what depends on the time.
    std::string Told() const { return output_.substr(0, output_.rfind('\n', output_.size() - 2)); }
};

TEST_F(MatchToolTest, PlaysTheSameMatchAgain) {
    const std::string command =
        std::string(TWICE) + "--nodes 200 --games 6 --option-second Aggressivity=300 ";
    ASSERT_EQ(Run(command + "--pgn one --concurrency 1"), 0) << output_ << errors_;
    EXPECT_TRUE(std::regex_search(output_, std::regex("\n6 games: \\+\\d -\\d =\\d, \\d+.\\d %, Elo .*\n")))
        << output_;
    EXPECT_TRUE(Says("first: ") && Says("(Kestrovan 1.50)\nsecond: ")) << output_;
    const std::string told = Told(), games = directory_.ReadFile("one");
    ASSERT_EQ(Run(command + "--pgn two --concurrency 3"), 0);
    EXPECT_EQ(Told(), told) << "whatever the order that the games end in";
    ASSERT_EQ(Run(command + "--pgn three --concurrency 1"), 0);
    EXPECT_EQ(directory_.ReadFile("three"), games);
    ASSERT_EQ(Run(command + "--pgn four --concurrency 1 --seed 2"), 0);
    EXPECT_NE(directory_.ReadFile("four"), games);

    // The games are games: their moves can be read, and each opening is played with both colours.
    ASSERT_EQ(Run(std::string(TWICE) + "--nodes 100 --games 6 --openings one.pgn --plies 8", "output",
                  "cp one one.pgn"),
              0)
        << errors_;
    const std::regex fen("FEN \"(.*)\"");
    std::vector<std::string> fens;
    for (std::sregex_iterator it(games.begin(), games.end(), fen), end; it != end; ++it)
        fens.push_back((*it)[1]);
    ASSERT_EQ(fens.size(), 6u) << games;
    for (size_t i = 0; i < fens.size(); i += 2) EXPECT_EQ(fens[i], fens[i + 1]);
    EXPECT_NE(fens[0], fens[2]);
    EXPECT_NE(games.find("[Round \"3.2\"]\n[White \"Kestrovan 1.50 (second)\"]"), std::string::npos) << games;
}

TEST_F(MatchToolTest, GivesEachPlayerItsOwn) {
    const std::string own = directory_.Path() + "/own";
    std::filesystem::create_directory(own);
    directory_.WriteFile("weights", "1\n");
    // It says in which directory it is, and what is in there, and writes down its options.
    WriteEngine("script",
                "uci) echo id name $(pwd): $(cat values.txt 2>&1); echo option name hash type spin;\n"
                "echo option name OwnBook type check; echo option name Clear Hash type button; echo uciok;;\n"
                "setoption*) echo $line >>'" +
                    directory_.Path() + "/options';;\ngo*) exit;;");
    const std::string command = "./script ./script --games 2 --concurrency 1 ";
    EXPECT_EQ(Run(command + "--values-second weights --option-first 'hash=4 and more'"), 1);
    const std::regex heads("first: ./script \\((.*): cat: .*\\)\nsecond: ./script \\((.*): 1\\)\n[^]*");
    std::smatch found;
    ASSERT_TRUE(std::regex_match(output_, found, heads)) << output_;
    EXPECT_NE(found[1], found[2]);
    for (const int player : {1, 2}) EXPECT_FALSE(std::filesystem::exists(found[player].str()));
    EXPECT_TRUE(
        directory_.ReadFile("options").starts_with("setoption name Hash value 16\n"
                                                   "setoption name OwnBook value false\n"
                                                   "setoption name hash value 4 and more\n"
                                                   "setoption name Hash value 16\n"
                                                   "setoption name OwnBook value false\n"))
        << directory_.ReadFile("options");
    EXPECT_EQ(Run(command + "--directory-first own --tc 1"), 1);
    EXPECT_TRUE(Says("first: ./script (" + std::filesystem::canonical(own).string() + ": cat")) << output_;
    EXPECT_TRUE(Says("2 games: +1 -1 =0, 50.0 %")) << "whoever has White dies first\n" << output_;

    // Who takes queens for pawns loses, and the test stops when it has seen enough.
    const std::string edit = "printf 'writevalues\\nquit\\n' | " + std::string(ENGINE) +
                             ">/dev/null; sed -i '9,10s/.*/-800/' values.txt";
    EXPECT_EQ(Run(std::string(TWICE) + "--values-second values.txt --depth 2 --sprt 0 100", "output", edit),
              0);
    EXPECT_TRUE(Says("SPRT of 100 against 0 Elo: 100 Elo accepted\n")) << output_;
    EXPECT_FALSE(Says("1000 games")) << output_;
}

TEST_F(MatchToolTest, CanBeInterrupted) {
    // The engines of the games that are played then end with it, and so does what they have started.
    WriteEngine("script", "go*) sleep 600 & echo $$ $! >>'" + directory_.Path() + "/processes'; wait;;");
    const std::string interrupted = "{ '" KESTROVAN_MATCH
                                    "' ./script ./script >told & "
                                    "while [ ! -s processes ]; do sleep 0.05; done; kill -INT $!; wait $!; "
                                    "echo $? >status; } 2>/dev/null";
    EXPECT_EQ(Run("--help", "output", interrupted), 0);
    EXPECT_EQ(directory_.ReadFile("status"), "1\n");
    EXPECT_NE(directory_.ReadFile("told").find("Interrupted\nNo pair of games was completed\n"),
              std::string::npos)
        << directory_.ReadFile("told");
    // Whoever is dead may still be listed, as Z.
    const std::string look =
        "for p in $(cat processes); do grep -s '^State:.[^Z]' /proc/$p/status; done >alive";
    EXPECT_EQ(Run("--help", "output", look), 0);
    EXPECT_EQ(directory_.ReadFile("alive"), "");
}

// Both kings go along their ranks from a to h, and both players know who wins.
TEST_F(MatchToolTest, EndsDecidedGamesEarly) {
    directory_.WriteFile("kings.epd", "k7/3p4/8/8/8/8/3P4/K7 w - -\n");
    for (const std::string score : {"900", "-900"}) {
        WriteEngine(
            score,
            "position*) set -- $line; n=$(($# > 8 ? $# - 9 : 0));;\n"
            "go*) echo info depth 1 multipv 1 score cp " +
                score +
                " pv a1a2;\n"
                "echo info depth 1 multipv 2 score cp 0 pv a1a2;\n"
                "rank=$((n % 2 * 7 + 1)); from=$((n / 2 + 1)); files=abcdefghi;\n"
                "echo bestmove $(echo $files | cut -c$from)$rank$(echo $files | cut -c$((from + 1)))$rank;;");
    }
    const std::string command = "./900 ./-900 --games 2 --openings kings.epd --pgn games ";
    EXPECT_EQ(Run(command), 0) << output_ << errors_;
    EXPECT_TRUE(Says(" games: +2 -0 =0") && Says("Endings: judged 2\n")) << output_;
    EXPECT_NE(directory_.ReadFile("games").find("4. Ke1 Ke8\n{judged} 1-0"), std::string::npos)
        << directory_.ReadFile("games");
    EXPECT_EQ(Run(command + "--play-out"), 1);
    EXPECT_TRUE(Says("plays h1i1\n")) << output_;
}

TEST_F(MatchToolTest, CountsFaults) {
    ExpectFault("go*) echo broken >&2; exit 3;;", "crash", "has ended with status 3\n  > position fen ");
    EXPECT_TRUE(Says("  > go depth 1\n  < broken\n")) << output_;
    ExpectFault("go*) kill -SEGV $$;;", "crash", "has been ended by a signal");
    ExpectFault("go*) echo info string thinking; echo bestmove e2e5;;", "illegal move",
                "plays e2e5\n  > position fen ");
    EXPECT_TRUE(Says("  > go depth 1\n  < info string thinking\n  < bestmove e2e5\n")) << output_;
    ExpectFault("go*) ;;", "silence", "gives no answer in time\n");
    ExpectFault("go*) while :; do echo info depth 1; done;;", "silence", "gives no answer in time\n");
    ExpectFault("go*) ;;", "flag", "oversteps its time\n", "--tc 1+0.1");
    // A program that neither reads nor stops talking.
    ExpectFault("ucinewgame) echo readyok; exec yes bestmove a7a6;;", "illegal move", "plays a7a6\n");
}

TEST_F(MatchToolTest, RefusesWhatItCannotDo) {
    const auto refuses = [&](const std::string& arguments, const std::string& reason) {
        ExpectRefusal(arguments, reason);
        EXPECT_EQ(Run(arguments), 2) << arguments;
    };
    const std::string twice = TWICE;
    WriteEngine("script", "");
    directory_.WriteFile("empty.epd", "");
    directory_.WriteFile("text", "no engine");
    refuses("", "first is required");
    refuses(ENGINE, "second is required");
    refuses(twice + "--nodes 10 --depth 3", "--depth");
    for (const char* clock : {"1+", "x", "0+1", "1+2+3", "nan", "1+-1", "-5"}) {
        refuses(twice + "--tc=" + clock, "SECONDS+INCREMENT");
    }
    refuses(twice + "--option-first Hash", "NAME=VALUE");
    refuses(twice + "--option-second Hush=1", "has no option Hush");
    refuses(twice + "--openings empty.epd", "holds no opening");
    refuses(twice + "--openings missing", "--openings");
    refuses(twice + "--games 1002", "500 openings");
    refuses(twice + "--sprt 5 0", "--sprt");
    refuses(twice + "--pgn missing/games.pgn", "can't write missing/games.pgn");
    refuses(twice + "--values-first text", "can't use the weights");
    refuses(twice + "--values-first text --directory-first .", "--directory-first");
    refuses("./text ./script", "./text is no UCI engine: it can't be started");
    refuses("./script missing", "missing is no UCI engine");
    WriteEngine("deaf", "uci) echo option name Long type string; echo uciok; exec sleep 600;;");
    refuses("./script ./deaf --timeout 0.5 --option-second Long=" + std::string(100'000, 'x'),
            "no answer in time");
    refuses("./script cat --timeout 0.1", "cat is no UCI engine: it gives no answer in time");
}

}  // namespace
