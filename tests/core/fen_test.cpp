#include "core/fen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/board.h"
#include "core/boardtext.h"
#include "core/keys.h"
#include "core/movetext.h"
#include "core/perft.h"
#include "core/positionfault.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using FenTest = CoreTest;

// The board that the text leaves.
Board Loaded(const std::string& fen) {
    ClearBoard();
    board.PieceNumber[KING][WHITE] = board.PieceNumber[KING][BLACK] = 0;  // only ever counted up
    LoadFEN(fen.c_str());
    return board;
}

TEST_F(FenTest, ReadsPlacementWhateverItHolds) {
    const Board kings = Loaded("4k3/8/8/8/8/8/8/4K3 w - -");
    EXPECT_EQ(kings.PieceCount, 2u);
    EXPECT_TRUE(Loaded("  4k3/8/8/8/8/8/8/4K3   w   -   -  ") == kings);
    EXPECT_TRUE(Loaded("4?9k*3/8/0/9/8/!/8/4K3 w") == kings) << "unknown characters take no file";
    EXPECT_TRUE(Loaded("4k3/8/8/8/8/8/8/4K3/QQQQ/8 w - -") == kings) << "nothing below the first rank";
    EXPECT_TRUE(Loaded("4k3QQQQQ/8Q/88R/8/8/8/8/4K3 w - -") == kings) << "nothing beyond the h-file";
    for (const char* side : {"", "b", "W", "x"}) {
        EXPECT_EQ(Loaded(std::string("4k3/8/8/8/8/8/8/4K3 ") + side).SideToMove, BLACK) << side;
    }
}

TEST_F(FenTest, CutsRightsBackToWhatTheMenAllow) {
    const struct {
        const char *Placement, *Rights;
        unsigned Flags;
    } rows[] = {
        {"r3k2r/8/8/8/8/8/8/R3K2R", "KxHqq", 9}, {"r3k2r/8/8/8/8/8/8/R3K2R", "-KQkq", 0},
        {"r3k2r/8/8/8/8/8/8/R3K3", "KQkq", 14},  {"r3k2r/8/8/8/8/8/8/4K2R", "KQkq", 13},
        {"4k2r/8/8/8/8/8/8/R3K2R", "KQkq", 7},   {"r3k3/8/8/8/8/8/8/R3K2R", "KQkq", 11},
        {"r2k3r/8/8/8/8/8/8/R3K2R", "KQkq", 3},  {"r3k2r/8/8/8/8/8/8/R4K1R", "KQkq", 12},
        {"r3k2R/8/8/8/8/8/8/r3K2R", "KQkq", 9},  // a rook of the other side is none
    };
    for (const auto& row : rows) {
        const Board loaded = Loaded(std::string(row.Placement) + " w " + row.Rights + " - 7 9");
        EXPECT_EQ(loaded.CastlingFlags, row.Flags) << row.Placement << ' ' << row.Rights;
        EXPECT_EQ(loaded.Fifty, 0u);
    }
}

TEST_F(FenTest, ReadsEnPassantByThePawnsOwnSquare) {
    const struct {
        const char *Position, *Field, *LastMove, *Written;
    } rows[] = {
        {"8/8/8/8/4P3/8/8/K7 b", "E4 0 1", "e2e4", ""},   {"8/8/8/8/4P3/8/8/K7 b", "e3", "0000", "- "},
        {"8/8/8/8/4P3/8/8/K7 b", "e", "0000", "- "},      {"8/8/8/8/4P3/8/8/K7 b", "i4", "0000", "- "},
        {"8/8/8/2PpP3/8/8/8/4K3 w", "d5", "d7d5", "d5 "}, {"8/8/8/2PpP3/8/8/8/4K3 b", "d5", "0000", "- "},
        {"8/8/8/2PpP3/8/8/8/4K3 w", "c5", "0000", "- "},  // that pawn is White's
        {"8/8/8/2PnP3/8/8/8/4K3 w", "d5", "0000", "- "},  // that man is no pawn
        {"8/8/P7/7p/8/8/8/4K3 w", "h5", "h7h5", ""},      // no neighbour, on the far edge
        {"8/8/8/p7/7P/8/8/4K3 w", "a5", "a7a5", ""},
    };
    for (const auto& row : rows) {
        const std::string text = std::string(row.Position) + " - ";
        Loaded(text + row.Field);
        EXPECT_STREQ(MoveToText(LastMove()), row.LastMove) << text << row.Field;
        EXPECT_EQ(HistoryLength, LastMove() == NO_MOVE ? 0 : 1) << text << row.Field;
        EXPECT_EQ(GetFEN("tail"), text + row.Written + "tail") << text << row.Field;
    }
}

TEST_F(FenTest, WritesPositionsForOtherPrograms) {
    int captures = 0;
    VisitPositions(20000, 43, [&] {
        const Board before = board;
        const HistoryRecord first = History[0];
        const int length = HistoryLength;
        const uint64_t key = PositionKey();
        const std::string text = GetEPD();
        LoadCommonFEN(text.c_str());
        EXPECT_TRUE(PositionKey() == key && board.SideToMove == before.SideToMove) << text;
        EXPECT_TRUE(std::equal(before.KingSquare, before.KingSquare + 2, board.KingSquare)) << text;
        captures += text.back() != '-';
        board = before;
        History[0] = first;
        HistoryLength = length;
    });
    EXPECT_GT(captures, 20) << "en passant";
    LoadFEN("8/8/7k/2PpP3/8/8/8/4K3 w - d5");
    EXPECT_EQ(GetEPD(), "8/8/7k/2PpP3/8/8/8/4K3 w - d6");
}

// Text that looks like positions, with bytes changed, dropped and doubled.
std::string Mutate(std::string text, std::mt19937_64& random) {
    static constexpr char BYTES[] = "KQRBNPkqrbnp12345678/ w-abcdefgh0159\x01\xFF\t";
    for (uint64_t edits = random() % 8; edits > 0 && !text.empty(); --edits) {
        const size_t place = random() % text.size();
        switch (random() % 4) {
            case 0:
                text.erase(place, 1 + random() % 3);
                break;
            case 1:
                text.insert(place, text.substr(random() % text.size(), random() % 9));
                break;
            default:
                text[place] = BYTES[random() % (sizeof BYTES - 1)];
        }
    }
    return random() % 8 == 0 ? text + text + text : text;
}

TEST_F(FenTest, SurvivesGarbage) {
    std::mt19937_64 random(41);
    Board start = board;
    std::fill_n(start.PieceNumber[KING], 2, 1);
    int playable = 0;
    testing::internal::CaptureStdout();
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const std::string text = Mutate(NASTY_POSITIONS[random() % std::size(NASTY_POSITIONS)], random);
        const Board before = Loaded(text);
        const bool isPlayable = FindPositionFault() == nullptr;
        EXPECT_TRUE(board == before) << text;
        PrintBoard();
        GetFEN();
        Perft(1);
        for (const Move move : LegalMoves()) EXPECT_NE(MoveCaptured(move), unsigned{KING}) << text;
        EXPECT_TRUE(!isPlayable || board == before) << text;
        playable += isPlayable;
        EXPECT_TRUE(Loaded(START) == start) << "nothing of " << text << " is left";
        EXPECT_EQ(HistoryLength, 0);
    }
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(playable > 1000 && playable < 19000);
}

}  // namespace
