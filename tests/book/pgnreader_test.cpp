#include "book/pgnreader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/walker.h"

namespace {

using PgnReaderTest = CoreTest;

using FilePointer = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

FilePointer OpenText(const std::string& text) {
    FilePointer file(std::tmpfile(), &std::fclose);
    std::fwrite(text.data(), 1, text.size(), file.get());
    std::rewind(file.get());
    return file;
}

const char* ResultText(GameResult result) {
    constexpr const char* TEXTS[] = {"?", "1-0", "0-1", "1/2"};
    return TEXTS[static_cast<int>(result)];
}

// The games of the text, one a line: moves and result, or the line and kind of the fault.
std::string Games(const std::string& text, int maxPlies = INT_MAX) {
    const FilePointer file = OpenText(text);
    PgnReader reader(file.get(), maxPlies);
    std::string games;
    PgnGame game;
    for (int64_t number = 1;; ++number) {
        const PgnStatus status = reader.Next(game);
        if (status == PgnStatus::END) break;
        EXPECT_EQ(game.Number, number);
        EXPECT_EQ(status == PgnStatus::BROKEN, !game.Fault.empty());
        EXPECT_EQ(game.MoveFault == SAN_AMBIGUOUS, game.Fault == "ambiguous move " + game.FaultMove);
        EXPECT_EQ(game.MoveFault == SAN_UNKNOWN, game.Fault == "can't recognize " + game.FaultMove);
        if (!games.empty()) games += '\n';
        if (status != PgnStatus::BROKEN || !game.Moves.empty()) {
            const std::string end = GetFEN();
            SetUpStart(game);
            for (const Move move : game.Moves) MakeMove(move, 1);
            EXPECT_EQ(GetFEN(), end) << "played over again";
        }
        if (status == PgnStatus::BROKEN) {
            games += std::to_string(game.FaultLine) + ": " + game.Fault;
        } else {
            games += TextOf(game.Moves) + (game.Moves.empty() ? "" : " ") + ResultText(game.Result);
        }
    }
    EXPECT_FALSE(reader.HasReadError());
    EXPECT_EQ(reader.Next(game), PgnStatus::END) << "the end stays";
    return games;
}

struct Row {
    std::string Text, Games;
};

void ExpectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(Games(row.Text), row.Games) << row.Text;
}

constexpr char MOVES[] = "e2e4 e7e5 g1f3 ";

TEST_F(PgnReaderTest, LeavesOutAllButMoves) {
    const std::string expected = std::string(MOVES) + "1-0";
    for (const char* text : {
             "1. e4 e5 2. Nf3 1-0",
             "1.e4 e5 2.Nf3 1-0",
             "1 e4 e5\n2 Nf3\n1-0\n",
             "e4 e5 Nf3 1-0",
             "1. e4 1... e5 2. Nf3 1-0",
             "1.e4 1...e5 2.Nf3 1-0 ; the rest of the line {",
             "\xEF\xBB\xBF"
             "1. e4 e5 2. Nf3 1-0",
             "1. e4\re5\r2. Nf3\r1-0\r",
             "1. e4\r\ne5\r\n2. Nf3\r\n1-0",
             "1. e4 {the best\nby test (1. d4) [Even so] ; $1} e5 2. Nf3 1-0",
             "{before} 1. e4{glued}e5{}2. Nf3{} 1-0",
             "1. e4 ; 1... c5\ne5 2. Nf3 1-0",
             "1. e4\n% 1... c5 {\ne5 2. Nf3 1-0",
             "1. e4 (1. d4 d5 (1... Nf6 2. c4 {)} e6) 2. c4) e5 2. Nf3 1-0",
             "1. e4 (1. d4 ; )\n d5) e5 (1... c5\n% )\n)(1... c6) 2. Nf3 1-0",
             "1. e4 (1. d4 [not a tag\n) e5 2. Nf3 1-0",
             "1. e4$1 e5 $2 $123 2. Nf3$13$14 1-0",
             "1. e4! e5? 2. Nf3!? 1-0",
             "1. e4 ! e5 +- 2. Nf3 = 1-0",
             "1. e4\xE2\x80\xBC e5\xE2\x81\x87 2. Nf3\xE2\xA9\xB2 1-0",  // signs behind moves
             "1. e4 \xE2\x80\xBC e5 \xB1 2. Nf3 N 1-0",                  // and beside them
             "1. e4 e5 2. \xE2\x99\x98"
             "f3 1-0",  // a figurine
             "1.\xC2\xA0"
             "e4 e5 2.\xC2\xA0Nf3 1\xE2\x80\x93"
             "0",  // other blanks and dashes
             "1. e4 1\xE2\x80\xA6"
             "e5 2. Nf3 1-0",
             "1. e4 e5 ) } 2. Nf3 [%clk 1:00] 1-0",
             "1. e4<br />e5 2. Nf3 1-0",
             "1. e2-e4 e7-e5 2. Ng1-f3 1-0",
             "[Event \"a\"] [Result \"1-0\"] 1. e4 e5 2. Nf3",
             "[Event \"a\"]\n[Result \"1-0\"]\n\n1. e4 e5 2. Nf3 *",
             "[Event \"a\"]\n\n[Result \"1-0\"]\n1. e4 e5 2. Nf3",
             "[Event \"a\"]\n[Result 1-0]\n1. e4 e5 2. Nf3",
             "[Event \"a\n[Result \"1-0\n1. e4 e5 2. Nf3",
             "[Event \"a\"]<br />[Result \"0-1\"]<br /><br />1. e4 e5<br />2. Nf3 1-0",
         }) {
        EXPECT_EQ(Games(text), expected) << text;
    }
    EXPECT_EQ(Games(std::string("1. e4 e5\0\0 2. Nf3\0 1-0", 22)), expected);
    const std::string longComment = "{" + std::string(200000, 'x') + "\n" + std::string(200000, '(') + "}";
    EXPECT_EQ(Games(longComment + " 1. e4 e5 " + longComment + " 2. Nf3 1-0"), expected);
    EXPECT_EQ(Games("1. e4 " + std::string(100000, '(') + std::string(100000, ')') + " e5 2. Nf3 1-0"),
              expected);
}

TEST_F(PgnReaderTest, KnowsResults) {
    ExpectRows({
        {"", ""},
        {"\n \n; nothing\n% at all\n{ or nearly } (1. e4)", ""},
        {"*", "?"},
        {"1-0", "1-0"},
        {"1. e4 0-1", "e2e4 0-1"},
        {"1. e4 1/2-1/2", "e2e4 1/2"},
        {"1. e4 1/2", "e2e4 1/2"},
        {"1. e4 1 - 0 1. d4 d5 1/2 -\t1/2 1. c4 0 -1 1 - 2", "e2e4 1-0\nd2d4 d7d5 1/2\nc2c4 0-1"},
        {"1. e4 \xC2\xBD-\xC2\xBD", "e2e4 1/2"},
        {"1. e4", "e2e4 ?"},
        {"[Result \"1-0\"] 1. e4 0-1", "e2e4 0-1"},
        {"[Result \"1/2-1/2\"]", "1/2"},
        {"1. e4*1. d4*", "e2e4 ?\nd2d4 ?"},
        {"1. e4 e5 2. Nf3 d6 3. Bc4 a6 4. 0-0 0-1", "e2e4 e7e5 g1f3 d7d6 f1c4 a7a6 e1g1 0-1"},
    });
}

TEST_F(PgnReaderTest, TellsGamesApart) {
    ExpectRows({
        {"1. e4 1-0 1. d4 0-1", "e2e4 1-0\nd2d4 0-1"},
        {"1. e4\n[White \"b\"]\n1. d4", "e2e4 ?\nd2d4 ?"},
        {"1. e4\n  [White \"b\"]\n1. d4", "e2e4 ?\nd2d4 ?"},
        {"1. e4 1-0 [White \"b\"] 1. d4", "e2e4 1-0\nd2d4 ?"},
        {"[Event \"a\"]\n[Result \"1-0\"]\n[Event \"b\"]\n\n1. d4", "1-0\nd2d4 ?"},
        {"[White \"a\"]\n\n[Result \"1-0\"]\n\n1. d4", "d2d4 1-0"},
    });
}

TEST_F(PgnReaderTest, GoesOnBehindBrokenGames) {
    ExpectRows({
        {"1.d4 Nf6\n2. Sf3 d5 {*} (1-0)\n 1-0 1. e4 *", "2: can't recognize Sf3\ne2e4 ?"},
        {"1. d4 d5 2. Nf3 Nf6 3. Nd2 1-0 1. e4 *", "1: ambiguous move Nd2\ne2e4 ?"},
        {"1. d4 --\n[Event \"b\"]\n1. e4", "1: can't recognize --\ne2e4 ?"},
        {"1. d4 Z0 1-0", "1: can't recognize Z0"},
        {"1. d4 @ 1-0", "1: can't recognize @"},
        {"1. d4 \xE6\x9B\xB2"
         "f3 1-0 1. e4",
         "1: can't recognize \xE6\x9B\xB2"
         "f3\ne2e4 ?"},
        {"1. d4 " + std::string(100000, 'x') + " 1-0 1. e4",
         "1: can't recognize " + std::string(PgnLexer::WORD_LIMIT, 'x') + "\ne2e4 ?"},
        {"Subject: a game\n\n[Event \"a\"]\n1. e4", "1: can't recognize Subject:\ne2e4 ?"},
        {"1. e4 {open\n[Event \"b\"]\n1. d4 1-0", "1: unclosed comment\nd2d4 1-0"},
        {"1. e4 (1. c4\n\n[Site \"b\"]\n1. d4 1-0", "1: unclosed variation\nd2d4 1-0"},
        {"1. e4 (1. c4 {\n[Event \"b\"]\n1. d4 1-0", "1: unclosed variation\nd2d4 1-0"},
        {"1. e4 e5\n{open", "2: unclosed comment"},
        {"1. e4 (open", "1: unclosed variation"},
        {"1. e5 {open\n[Event \"b\"]", "1: can't recognize e5\n?"},
    });
}

TEST_F(PgnReaderTest, KnowsVariants) {
    ExpectRows({
        {"[Variant \"Crazyhouse\"]\n1. e4 1-0 [Event \"b\"] 1. d4", "1: variant Crazyhouse\nd2d4 ?"},
        {"[Event \"a\"]\n[Variant \"fischerandom\"]\n[FEN \"8\"]\n1. e4 1-0", "2: variant fischerandom"},
    });
    for (const char* name : {"", "Standard", "STANDARD", "chess", "Normal", "From Position", "?"}) {
        EXPECT_EQ(Games(std::string("[Variant \"") + name + "\"] 1. e4"), "e2e4 ?") << name;
    }
}

TEST_F(PgnReaderTest, SetsUpPositions) {
    ExpectRows({
        {"[FEN \"4k3/8/8/8/8/8/8/4K2R w K - 0 1\"] 1. O-O 1-0 1. e4", "e1g1 1-0\ne2e4 ?"},
        {"[FEN \"4k3/8/8/8/4pP2/8/8/4K3 b - f3 0 9\"] 9... exf3 *", "e4f3 ?"},
        {"[FEN \"4k3/8/8/8/4pP2/8/8/4K3 b - f4 0 9\"] 9... exf3 *", "e4f3 ?"},
        {"[FEN \"4k3/8/8/8/4pP2/8/8/4K3 b - - 0 9\"] 9... exf3 *", "1: can't recognize exf3"},
        {"\n[FEN \"4k3/8/8/8/8/8/8/8 w - -\"]\n\n1. e4 1-0",
         "2: illegal position: White must have exactly one king"},
        {"[FEN \"\"] 1. e4 1-0", "1: illegal position: White must have exactly one king"},
        {"[FEN \"4k3/4R3/8/8/8/8/8/4K3 w - -\"] *", "1: illegal position: the side not to move is in check"},
    });
    PgnGame game;
    for (const char* fen : {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                            "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1"}) {
        const FilePointer file = OpenText(std::string("[FEN \"") + fen + "\"] *");
        EXPECT_EQ(PgnReader(file.get()).Next(game), PgnStatus::GAME);
        EXPECT_EQ(game.HasSetUp, std::string(fen).find('K', 40) == std::string::npos) << fen;
    }
}

TEST_F(PgnReaderTest, KeepsTags) {
    const FilePointer file = OpenText(
        "; a file\n[Event \"The \\\"great\\\" match\"]\n[ White  \"C:\\\\me\" ] [black \"An \"odd\" one\"  "
        "]\n"
        "[Event2 \"x\"]\n[Result \"1-0\"]\n[Variant \"Chess\"]\n1. e4\n*\n\n1. d4");
    PgnReader reader(file.get());
    PgnGame game;
    EXPECT_EQ(reader.Next(game), PgnStatus::GAME);
    EXPECT_EQ(game.Event, "The \"great\" match");
    EXPECT_EQ(game.White, "C:\\me");
    EXPECT_EQ(game.Black, "An \"odd\" one");
    EXPECT_EQ(game.Variant, "Chess");
    EXPECT_EQ(game.ResultTag, "1-0");
    EXPECT_EQ(game.Line, 2);
    EXPECT_EQ(reader.Next(game), PgnStatus::GAME);
    EXPECT_EQ(game.Event + game.White + game.Black + game.Variant + game.ResultTag + game.Fen, "");
    EXPECT_EQ(game.Line, 10);
}

TEST_F(PgnReaderTest, NoticesCommentsAmongTags) {
    const struct {
        const char* Text;
        bool First, Second;
    } rows[] = {
        {"{a}\n[Event \"a\"]\n\n1. e4 * 1. d4", true, false},
        {"[Event \"a\"] {a}\n[White \"b\"]\n\n1. e4 *\n[Event \"c\"]", true, false},
        {"[Event \"a\"]\n\n{a} 1. e4 {b} * {c}\n\n[Event \"b\"]\n; {\n[White \"b\"]\n{d} 1. d4", false,
         false},
        {"{a} 1. e4 {b}\n[Event \"b\"]\n{c}\n[White \"c\"]", false, true},
    };
    for (const auto& row : rows) {
        const FilePointer file = OpenText(row.Text);
        PgnReader reader(file.get());
        PgnGame game;
        EXPECT_EQ(reader.Next(game), PgnStatus::GAME);
        EXPECT_EQ(game.HasTagComment, row.First) << row.Text;
        reader.Next(game);
        EXPECT_EQ(game.HasTagComment, row.Second) << row.Text;
    }
}

TEST_F(PgnReaderTest, ReadsNoMoreMovesThanWanted) {
    EXPECT_EQ(Games("1. e4 e5 2. Nf3 nonsense (1. x) -- 1-0 1. d4", 3), std::string(MOVES) + "1-0\nd2d4 ?");
    EXPECT_EQ(Games("1. e4 e5 0-1 1. xx", 0), "0-1\n?");
}

TEST_F(PgnReaderTest, PlaysGamesLongerThanHistory) {
    std::string text, moves;
    for (int i = 0; i < 1000; ++i) text += " Nf3 Nf6 Ng1 Ng8";
    const FilePointer file = OpenText(text + " e4 1-0");
    PgnGame game;
    EXPECT_EQ(PgnReader(file.get()).Next(game), PgnStatus::GAME);
    EXPECT_EQ(game.Moves.size(), 4001u);
    EXPECT_EQ(GamePly(), 4001);
}

constexpr char AWKWARD[] =
    "[Event \"a \\\"b\\\"\"]\r\n[Result \"1-0\"] [FEN \"4k3/P7/8/8/4pP2/8/8/4K2R b K f3 0 9\"]\r\n\r\n"
    "{c\n[x]} 9... exf3$4 (9... Kd7 {;} (9... Ke7)) 10. a8(Q)+!\xE2\x80\xBC Ke7 ; ok\n% no\n11. O-O *\n"
    "1. e4 e5 2. Qh5 Ke7 3. Qxe5# 1-0\n[White \"c\"]\n1. e4 Sf6 {\n[Event \"d\"]\n1. \xE2\x99\x98"
    "f3 1/2-1/2";

// Wherever the buffer of the source ends, the games are the same.
TEST_F(PgnReaderTest, ReadsAcrossBuffers) {
    const std::string expected = Games(AWKWARD);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 3) << expected;
    for (size_t padding = 65536 - sizeof AWKWARD - 2; padding < 65536 + 2; ++padding) {
        ASSERT_EQ(Games(std::string(padding, ' ') + AWKWARD), expected) << padding;
    }
}

TEST_F(PgnReaderTest, SurvivesGarbage) {
    for (size_t length = 0; length < sizeof AWKWARD; ++length) {
        const std::string games = Games(std::string(AWKWARD, length));
        ASSERT_LE(std::count(games.begin(), games.end(), '\n'), 4) << length;
    }
    std::mt19937_64 random(71);
    constexpr char BYTES[] = "[]\"{}();%$*.\n\r \\<>0-1/=\xE2\x99\x98QNe8x";
    for (int i = 0; i < 20000 / WORK_DIVISOR; ++i) {
        std::string text = AWKWARD;
        for (uint64_t edits = 1 + random() % 6; edits > 0; --edits) {
            const size_t place = random() % text.size();
            if (random() % 3 == 0) {
                text.erase(place, random() % 9);
                text += ' ';
            } else {
                text[place] = BYTES[random() % std::size(BYTES)];
            }
        }
        Games(text);
        ASSERT_FALSE(HasFailure()) << text;
    }
}

}  // namespace
