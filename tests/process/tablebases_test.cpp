// Endgame tablebases from outside: registration, its messages in every dialect, and searches with them.

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "tests/process/session.h"

namespace {

using Lines = std::vector<std::string>;

// What every position of a made-up table is: mated after five moves, a mate in five, or none.
constexpr char LOSES = -121, WINS = 122, BROKEN = 127;

const std::string QUEEN_ENDING = "position fen 8/8/8/4k3/8/8/8/K6Q w - - 0 1\n";

// A directory of tables of king and queen against king.
class Tables : public TempDirectory {
  public:
    explicit Tables(char blackEntry = LOSES, char whiteEntry = WINS) {
        WriteFile("kqk.nbw", std::string(25629, whiteEntry));
        WriteFile("KQK.NBB", std::string(28644, blackEntry));
    }
    std::string Setting() const { return "EGTBPath = " + Path() + "\n"; }
    std::string Option() const { return "setoption name NalimovPath value " + Path(); }
};

std::string Status(const std::string& path, const std::string& found) {
    return "UseEGTB = TRUE\ntb_path = " + path + "\n" + found;
}

// Text with the separator that the tests write in paths, whatever the program's system has.
std::string WithSlashes(std::string text) {
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

constexpr char NOT_FOUND[] = "EGTB files not found\n";

TEST(TablebasesProcessTest, FoundTablesAreReported) {
    const Tables tables;
    const std::regex found(
        "[^]*\n\n(3 piece EGTB files found\n\\d+kb of RAM used for TB indices and "
        "decompression tables\n)");
    const std::string output = WholeOutput("", tables.Setting());
    std::smatch match;
    ASSERT_TRUE(std::regex_match(output, match, found)) << output;
    const std::string report = match[1];
    Session engine(tables.Setting());
    EXPECT_EQ(Join(engine.Ask("egtbstat")), Status(tables.Path(), report));
    const struct {
        std::string Line, Path, Report;
    } rows[] = {
        {"setoption name NalimovPath value /nowhere", "/nowhere", NOT_FOUND},
        {"setoption name NalimovCache value 2", "/nowhere", NOT_FOUND},
        {tables.Option(), tables.Path(), report},
        {"egtpath nalimov /nowhere", "/nowhere", NOT_FOUND},
        {"egtpath nalimov /a , " + tables.Path() + "/;/b", "/a , " + tables.Path() + "/;/b", report},
        {"setoption name NalimovCache value 0", "/a , " + tables.Path() + "/;/b", report},
        {"setoption name NalimovCache value -1", "/a , " + tables.Path() + "/;/b", report},
        {"setoption name NalimovCache value 99999999999", "/a , " + tables.Path() + "/;/b", report},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Join(engine.Ask(row.Line)), "") << row.Line;
        EXPECT_EQ(Join(engine.Ask("egtbstat")), Status(row.Path, row.Report)) << row.Line;
    }
    Session without("UseEGTB = off\n" + tables.Setting());
    EXPECT_TRUE(HasLine(without.Ask(tables.Option() + "x\negtbstat"),
                        "UseEGTB = FALSE\ntb_path = " + tables.Path() + "\n" + NOT_FOUND));
}

TEST(TablebasesProcessTest, RemarksAreThoseOfTheDialect) {
    const Tables tables;
    tables.WriteFile("krk.nbb", "short");
    tables.WriteFile("kbbk.nbw.emd", "compressed");
    const std::string bad = "*** " + tables.FilePath("krk.nbb") + " corrupted 5 28644 28644\n",
                      packed = "*** Compressed tables can't be read: 1 left out, such as " +
                               tables.FilePath("kbbk.nbw.emd") + "\n";
    EXPECT_NE(WithSlashes(WholeOutput("", tables.Setting())).find("\n\n" + bad + packed + "3 piece "),
              std::string::npos);
    UciSession uci;
    EXPECT_EQ(WithSlashes(Join(uci.Ask(tables.Option()))), "info string " + bad + "info string " + packed);
    const Lines told = uci.Ask("debug on\n" + tables.Option());
    EXPECT_EQ(told.size(), 10u) << Join(told);
    for (const std::string& line : told) EXPECT_TRUE(line.starts_with("info string ")) << line;
    EXPECT_EQ(uci.Ask("debug off\n" + tables.Option()).size(), 2u);
    Session xboard;
    xboard.Ask("xboard\nprotover 2");
    EXPECT_EQ(WithSlashes(Join(xboard.Ask("egtpath nalimov " + tables.Path()))), "# " + bad + "# " + packed);
}

TEST(TablebasesProcessTest, SearchesBelieveTheTables) {
    const Tables tables;
    for (const std::string cache : {"0", "1"}) {
        UciSession engine;
        EXPECT_EQ(Join(engine.Ask(tables.Option() + "\nsetoption name NalimovCache value " + cache)), "");
        engine.Send(QUEEN_ENDING + "go depth 4");
        const std::string search = Join(engine.ReadUntil("bestmove "));
        EXPECT_TRUE(std::regex_search(search, std::regex(" score mate 6 .* tbhits [1-9]"))) << search;
        EXPECT_EQ(search.find("info string"), std::string::npos);
        // What was learnt of tables that are gone is forgotten with the searches.
        engine.Ask("setoption name NalimovPath value /nowhere\nsetoption name Clear Hash");
        engine.Send(QUEEN_ENDING + "go depth 2");
        EXPECT_EQ(Join(engine.ReadUntil("bestmove ")).find(" score mate"), std::string::npos);
    }
}

// Whether the answer asks it or only the line that is shown with the answer, which stays whole.
TEST(TablebasesProcessTest, ADamagedTableIsNamedOnceAndTheGameGoesOn) {
    const struct {
        char BlackEntry, WhiteEntry;
        const char* Name;
    } rows[] = {{BROKEN, WINS, "KQK.NBB"}, {LOSES, BROKEN, "kqk.nbw"}};
    for (const auto& row : rows) {
        const Tables tables(row.BlackEntry, row.WhiteEntry);
        const std::string fault =
            "*** " + tables.FilePath(row.Name) + " corrupted, not used any more: bad entry at byte ";
        UciSession engine;
        EXPECT_EQ(Join(engine.Ask(tables.Option())), "");
        Lines remarks;
        for (int i = 0; i < 2; ++i) {
            engine.Send(QUEEN_ENDING + "go depth 6");
            for (const std::string& line : engine.ReadUntil("bestmove ")) {
                if (line.starts_with("info string ")) remarks.push_back(line);
                EXPECT_EQ(line.find("info", 1), std::string::npos) << line;
            }
        }
        ASSERT_EQ(remarks.size(), 1u) << Join(remarks);
        EXPECT_TRUE(WithSlashes(remarks[0]).starts_with("info string " + fault)) << remarks[0];
    }
}

}  // namespace
