#include "search/tableanswer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <utility>

#include "core/attackquery.h"
#include "core/makemove.h"
#include "egtb/tablebases.h"
#include "search/oracles.h"
#include "search/plyinfo.h"
#include "search/reports.h"
#include "search/scores.h"
#include "search/search.h"
#include "tests/search/searchtest.h"
#include "tests/search/smalltables.h"
#include "tests/support/datafile.h"

namespace {

class TableAnswerTest : public SearchTest {
  protected:
    void SetUp() override {
        SolveSmallTables();
        SearchTest::SetUp();
        TablebaseProber = ProbeSmallTables;
        FoundPieces = 3;
    }
    void TearDown() override {
        TablebaseProber = nullptr;
        FoundPieces = found_;
        MoveTime = InfiniteSearch = 0;
        SearchTest::TearDown();
    }

    // A random legal position of a king and a man of White's or, in lower case, Black's against a king.
    void Place(char man) {
        do {
            std::string squares(64, '1');
            for (const char letter : {'K', 'k', man}) {
                size_t square = random_() % 64;
                while (squares[square] != '1') square = random_() % 64;
                squares[square] = letter;
            }
            for (int rank = 1; rank < 8; ++rank) squares.insert(static_cast<size_t>(rank * 9 - 1), "/");
            LoadFEN((squares + (random_() % 2 == 0 ? " w - -" : " b - -")).c_str());
        } while ((board.Pieces[PAWN][WHITE] | board.Pieces[PAWN][BLACK]) & 0xFF000000000000FF ||
                 IsKingAttacked(ChangeSide(board.SideToMove)) || LegalMoves().empty());
    }

    // Positions in which the side to move wins, draws or loses, as `sign` says.
    void Visit(int count, const std::string& men, int sign, const std::function<void()>& visit) {
        for (int i = 0; i < std::max(1, count / WORK_DIVISOR) && !HasFailure();) {
            Place(men[random_() % men.size()]);
            const TableValue value = SmallTableValue();
            if ((value > 0) - (value < 0) != sign) continue;
            Forget();
            visit();
            ++i;
        }
    }

    Move RandomMove() {
        const std::vector<Move> moves = LegalMoves();
        return moves[random_() % moves.size()];
    }

    // The value of a move by the small tables; what they don't cover is drawn.
    static TableValue ValueOf(Move move) {
        MakeMove(move, 1);
        const TableValue value = SmallTableValue();
        UnmakeMove();
        return value == TABLE_BROKEN ? TABLE_DRAW : BeforeMove(value);
    }

    static std::vector<Move> MovesOfValue(TableValue value) {
        std::vector<Move> moves = LegalMoves();
        std::erase_if(moves, [=](Move move) { return ValueOf(move) != value; });
        return moves;
    }

    static int ScoreOf(TableValue value) {
        return IsWin(value) ? MATE + 1 - 2 * value : value == TABLE_DRAW ? 0 : 2 * MateMoves(value) - MATE;
    }

    // Thinks about the board as the limits have it; the draws of these games are announced to nobody.
    static Move Choose(int depth) {
        if (MoveTime > 0) AllocateTime(0);
        testing::internal::CaptureStdout();
        SearchBoard(depth);
        testing::internal::GetCapturedStdout();
        return RootMove(0);
    }

    static bool IsAnswered() { return Nodes == 0 && TablebaseHits > 0; }

    static bool IsProgress(Move move) { return MovePiece(move) == PAWN || MoveCaptured(move) != EMPTY; }

    // The square-to-square reverse of a quiet move.
    static Move Back(Move move) { return BuildMove(MoveTo(move), MoveFrom(move), MovePiece(move)); }

    static bool IsLegal(Move move) {
        const std::vector<Move> moves = LegalMoves();
        return std::find(moves.begin(), moves.end(), move) != moves.end();
    }

  private:
    const int found_ = FoundPieces;
    std::mt19937 random_{20240607};
};

TEST_F(TableAnswerTest, WinsTakeTheirNumberAndDrawsAreHeld) {
    const std::pair<int, int> limits[] = {{1, 0}, {4, 0}, {UNLIMITED_DEPTH, 1}};  // depth, centiseconds
    for (const auto& limit : limits) {
        const int depth = limit.first;
        MoveTime = limit.second;
        // Against the best and any other defence.
        for (const bool isBest : {true, false}) {
            Visit(40, "QRPqrp", 1, [&] {
                const int winner = board.SideToMove, number = SmallTableValue();
                const std::string start = GetFEN();
                int moves = 0;
                while (!LegalMoves().empty() && moves <= number) {
                    const bool isOwn = board.SideToMove == winner;
                    moves += isOwn;
                    const Move move = isOwn || isBest ? Choose(depth) : RandomMove();
                    EXPECT_TRUE(!isOwn || RootScore == ScoreOf(SmallTableValue())) << start;
                    MakeMove(move, 1);
                }
                EXPECT_TRUE(LegalMoves().empty() && IsKingAttacked(board.SideToMove)) << start;
                EXPECT_TRUE(isBest ? moves == number : moves <= number) << start << ": " << moves;
            });
        }
        Visit(40, "Pp", 0, [&] {
            const int holder = board.SideToMove;
            const std::string start = GetFEN();
            for (int ply = 0; ply < 60 && !LegalMoves().empty() && board.PieceCount == 3; ++ply) {
                const bool isOwn = board.SideToMove == holder;
                MakeMove(isOwn ? Choose(depth) : RandomMove(), 1);
                EXPECT_FALSE(isOwn && IsWin(SmallTableValue())) << start;
            }
        });
    }
}

TEST_F(TableAnswerTest, ScoresAreThoseOfAPlainSearch) {
    int compared = 0;
    const auto compare = [&](int sign) {
        Visit(1000, "QRPqrp", sign, [&] {
            // Of longer ones a search that reduces may find one that isn't the shortest.
            if (MateMoves(SmallTableValue()) > 2) return;
            int probed = 0;
            ++compared;
            Ply = 0;
            ASSERT_TRUE(ProbeTablebases({-MATE, MATE, 600, 0, false}, &probed));
            EXPECT_TRUE(SearchBoard(9) != "none" && IsAnswered());
            EXPECT_EQ(RootScore, probed);
            TablebaseProber = nullptr;
            Forget();
            Analyzing = 1;  // only moves, too
            SearchBoard(30);
            Analyzing = 0;
            EXPECT_TRUE(RootScore == probed && Nodes > 0) << GetFEN() << RootScore << " " << probed;
            TablebaseProber = ProbeSmallTables;
        });
    };
    compare(1);
    compare(-1);
    EXPECT_GT(compared, 0);
}

TEST_F(TableAnswerTest, LossesAreHeldUpAndDrawsSetTraps) {
    Visit(300, "QRPqrp", -1, [] {
        EXPECT_EQ(ValueOf(Choose(1)), SmallTableValue()) << GetFEN();
        EXPECT_EQ(RootScore, ScoreOf(SmallTableValue()));
    });
    DrawScore = 20;
    int given = 0, kept = 0, traps = 0, otherTraps = 0;
    Visit(300, "Pp", 0, [&] {
        const auto countTraps = [](Move move) {
            MakeMove(move, 1);
            int losing = 0;
            for (const Move reply : LegalMoves()) losing += IsLoss(ValueOf(reply));
            UnmakeMove();
            return losing;
        };
        const auto losesMan = [](Move move) {
            MakeMove(move, 1);
            const std::vector<Move> replies = LegalMoves();
            UnmakeMove();
            return std::any_of(replies.begin(), replies.end(),
                               [](Move reply) { return MoveCaptured(reply) != EMPTY; });
        };
        const Move chosen = Choose(1);
        EXPECT_EQ(ValueOf(chosen), TABLE_DRAW);
        EXPECT_EQ(RootScore, 20);
        const std::vector<Move> draws = MovesOfValue(TABLE_DRAW);
        // A lone king sets no traps, and a trap that gives the man away is none.
        const bool canKeep = !std::all_of(draws.begin(), draws.end(), losesMan);
        const auto isWinnable = [&](Move move) { return countTraps(move) > 0 && !losesMan(move); };
        if (!std::any_of(draws.begin(), draws.end(), isWinnable)) return;
        given += canKeep && losesMan(chosen);
        kept += !losesMan(chosen);
        traps += countTraps(chosen);
        otherTraps += countTraps(draws.back());
    });
    DrawScore = 0;
    EXPECT_EQ(given, 0);
    EXPECT_GT(kept, 0);
    EXPECT_GT(traps, otherTraps);
}

TEST_F(TableAnswerTest, ThePawnMovesBeforeTheFiftyMoveRuleDraws) {
    int met = 0;
    Visit(2000, "Pp", 1, [&] {
        const int number = SmallTableValue();
        const auto isSlow = [=](Move move) { return !IsProgress(move) || !IsWin(ValueOf(move)); };
        const std::vector<Move> moves = LegalMoves(), best = MovesOfValue(number);
        const bool hasPawnWin = !std::all_of(moves.begin(), moves.end(), isSlow);
        if (!hasPawnWin || number < 2 || std::any_of(best.begin(), best.end(), IsProgress)) return;
        ++met;
        board.Fifty = static_cast<uint32_t>(101 - 2 * number);
        EXPECT_EQ(ValueOf(Choose(1)), number) << "the mate comes with the hundredth ply";
        for (const uint32_t fifty : {102u - 2 * static_cast<uint32_t>(number), 99u}) {
            board.Fifty = fifty;
            const Move chosen = Choose(1);
            EXPECT_TRUE(IsProgress(chosen) && RootScore == ScoreOf(ValueOf(chosen))) << GetFEN();
        }
    });
    EXPECT_GT(met, 0);
    LoadFEN("k7/8/1K6/8/8/8/8/7R w - -");
    board.Fifty = 99;
    EXPECT_TRUE(Choose(1) == TextToMove("h1h8") && RootScore == MATE - 1) << "mate comes before the draw";
    LoadFEN("k7/8/8/1K6/8/8/8/7R w - -");
    board.Fifty = 99;
    Choose(1);
    EXPECT_EQ(RootScore, 0);
}

TEST_F(TableAnswerTest, RepetitionsAreDrawsByRuleOnly) {
    int met = 0;
    Visit(400, "QqRr", 1, [&] {
        const Move best = Choose(1);
        const int score = RootScore;
        // Goes round to the same position; false when the opponent's king can't.
        const auto goRound = [&] {
            MakeMove(best, 1);
            for (const Move reply : LegalMoves()) {
                MakeMove(reply, 1);
                if (IsQuiet(reply) && IsLegal(Back(best))) {
                    MakeMove(Back(best), 1);
                    if (IsLegal(Back(reply))) {
                        MakeMove(Back(reply), 1);
                        return true;
                    }
                    UnmakeMove();
                }
                UnmakeMove();
            }
            UnmakeMove();
            return false;
        };
        if (!goRound()) return;
        ++met;
        Choose(1);
        EXPECT_EQ(RootScore, score) << "once before is no draw yet";
        ASSERT_TRUE(goRound());
        EXPECT_TRUE(Choose(1) != best && RootScore > MATE_BOUND && RootScore <= score) << GetFEN();
    });
    EXPECT_GT(met, 0);
}

TEST_F(TableAnswerTest, EveryRootMoveIsRankedAndNoneAdded) {
    MultiPvCount = 4;
    Visit(100, "PpRr", 1, [] {
        const size_t count = LegalMoves().size();
        const TableValue number = SmallTableValue();
        SearchBoard(5);
        EXPECT_TRUE(IsAnswered() && static_cast<size_t>(RootMoveCount) == count);
        EXPECT_TRUE(std::is_sorted(RootScores, RootScores + RootMoveCount, std::greater<>()));
        for (int i = 0; i < RootMoveCount; ++i) EXPECT_EQ(RootScores[i], ScoreOf(ValueOf(RootMove(i))));
        // Some of the moves only.
        const std::vector<Move> others = MovesOfValue(ValueOf(RootMove(RootMoveCount - 1)));
        SearchMovesCount = static_cast<int>(others.size());
        std::copy(others.begin(), others.end(), SearchMoves);
        SearchBoard(5);
        EXPECT_TRUE(Nodes == 0 && RootMoveCount == SearchMovesCount);
        EXPECT_TRUE(RootScore <= ScoreOf(number) && RootScore == ScoreOf(ValueOf(others[0])));
        SearchMovesCount = 0;
    });
}

TEST_F(TableAnswerTest, TheSearchGoesOnWhereTablesAreMissing) {
    constexpr char WON[] = "8/8/8/3k4/8/8/4R3/4K3 w - -";
    const auto isAnswered = [](const char* fen) {
        Forget();
        Search(fen, 4);
        EXPECT_TRUE(Nodes == 0 || RootScore > 300) << fen;
        return IsAnswered();
    };
    EXPECT_TRUE(isAnswered(WON));
    MateSearch = 2;
    Search("k7/8/8/1K6/8/8/8/7R w - -", 20);
    EXPECT_TRUE(Nodes > 0 && !IsAnswered()) << "a mate search has its own question";
    MateSearch = 0;
    EXPECT_FALSE(isAnswered("8/8/8/3k4/8/8/8/R3K3 w Q -")) << "castling";
    EXPECT_FALSE(isAnswered("8/8/8/3k4/8/8/4R3/4K2N w - -")) << "one man too many";
    TablebaseProber = [](int* score) { return board.SideToMove == WHITE && ProbeSmallTables(score); };
    EXPECT_FALSE(isAnswered(WON)) << "one side's table";
    // Of the promotions, two leave too little for a mate: no table is needed for them.
    TablebaseProber = ProbeSmallTables;
    EXPECT_TRUE(isAnswered("8/4P3/8/1k6/8/8/8/4K3 w - -"));
    EXPECT_EQ(RootMove(0), TextToMove("e7e8q"));
    TablebaseProber = [](int* score) {
        return board.PieceNumber[ROOK][WHITE] == 0 && ProbeSmallTables(score);
    };
    EXPECT_FALSE(isAnswered("8/4P3/8/1k6/8/8/8/4K3 w - -")) << "one promotion is not known";
}

// The moves of the line that is printed for the best move.
std::vector<std::string> PrintedLine() {
    testing::internal::CaptureStdout();
    PrintPv(0);
    return SplitWords(testing::internal::GetCapturedStdout());
}

TEST_F(TableAnswerTest, LinesLeadToTheMate) {
    constexpr size_t LONGEST_LINE = 21;
    const auto expectLine = [&](size_t length) {
        const std::string start = GetFEN();
        const std::vector<std::string> line = PrintedLine();
        EXPECT_EQ(line.size(), std::min(length, LONGEST_LINE)) << start;
        EXPECT_EQ(PonderMove,
                  line.size() > 1 ? (MakeMove(RootMove(0), 1), TextToMove(line[1].c_str())) : NO_MOVE);
        if (line.size() > 1) UnmakeMove();
        for (const std::string& text : line) {
            const Move move = TextToMove(text.c_str());
            ASSERT_TRUE(IsLegal(move)) << start << " " << text;
            MakeMove(move, 1);
        }
        const bool isMate = LegalMoves().empty() && IsKingAttacked(board.SideToMove);
        EXPECT_EQ(isMate, length <= LONGEST_LINE) << start;
    };
    Visit(100, "QRPqrp", 1, [&] {
        const int number = SmallTableValue();
        Choose(1);
        expectLine(static_cast<size_t>(2 * number - 1));
    });
    Visit(100, "QRPqrp", -1, [&] {
        const int number = MateMoves(SmallTableValue());
        Choose(1);
        expectLine(static_cast<size_t>(2 * number));
    });
    Visit(50, "Pp", 0, [&] {
        Choose(1);
        for (const std::string& text : PrintedLine()) {
            ASSERT_TRUE(IsLegal(TextToMove(text.c_str()))) << text;
            MakeMove(TextToMove(text.c_str()), 1);
        }
    });
    // A line that a search has found, from outside of the tables into them.
    Search("8/8/8/3k4/8/8/8/R3K3 w Q -", 4);
    const std::vector<std::string> line = PrintedLine();
    EXPECT_TRUE(Nodes > 0 && static_cast<int>(line.size()) == std::min(MATE - RootScore, 21)) << RootScore;
}

TEST_F(TableAnswerTest, WaitsWhereTheSearchWould) {
    const PipeInput input;
    input.Write("isready\nstop\n");
    InfiniteSearch = UciMode = 1;
    testing::internal::CaptureStdout();
    Search("8/8/8/3k4/8/8/4R3/4K3 w - -", UNLIMITED_DEPTH);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(IsAnswered() && StopRequested == 1);
    EXPECT_LT(text.find(" score mate "), text.find("readyok")) << text;
}

// A draw that somebody has to claim is not thrown away: the move before it is played as if nobody did.
TEST_F(TableAnswerTest, UnclaimedDrawsAreStillWonOrHeld) {
    Visit(40, "QR", 1, [] {
        board.Fifty = 99;
        const TableValue value = SmallTableValue();
        if (value == MateIn(1)) return;
        const Move move = Choose(4);
        EXPECT_EQ(RootScore, 0);
        EXPECT_EQ(ValueOf(move), value) << GetFEN();
    });
}

// Of two ways to lose the longer one, but rather one that the fifty-move rule may put an end to.
TEST_F(TableAnswerTest, LosersHopeForTheFiftyMoveRule) {
    TablebaseProber = [](int* score) {
        const int moves = MovePiece(LastMove()) == PAWN ? 30 : 20;
        *score = LastMove() == NO_MOVE ? 0 : MATE - 2 * moves;
        return true;
    };
    FoundPieces = 4;
    for (const uint32_t fifty : {0u, 70u}) {
        LoadFEN("8/8/8/3k4/8/1q6/5P2/7K w - -");
        board.Fifty = fifty;
        EXPECT_EQ(MovePiece(Choose(1)), fifty == 0 ? PAWN : KING);
    }
}

}  // namespace
