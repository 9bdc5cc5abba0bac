#include "core/fen.h"

#include <gtest/gtest.h>

#include <random>

#include "core/attackquery.h"
#include "core/board.h"
#include "core/boardtext.h"
#include "core/movetext.h"
#include "core/perft.h"
#include "core/positionfault.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using FenTest = CoreTest;

// A position as the tests write it, empty squares one by one.
std::string Loaded(const char* fen) {
    LoadFEN(fen);
    return SlowPosition::FromBoard().Text();
}

TEST_F(FenTest, ReadsPlacementWhateverItHolds) {
    const std::string kings = Loaded("4k3/8/8/8/8/8/8/4K3 w - -");
    EXPECT_EQ(kings, "1111k111/11111111/11111111/11111111/11111111/11111111/11111111/1111K111 w - -");
    EXPECT_EQ(Loaded("  4k3/8/8/8/8/8/8/4K3   w   -   -  "), kings);
    EXPECT_EQ(Loaded("4?k*3/8/0/9/8/!/8/4K3 w - -"), kings) << "unknown characters take no file";
    EXPECT_EQ(Loaded("4k3/8/8/8/8/8/8/4K3/QQQQ/8 w - -"), kings) << "nothing below the first rank";
    EXPECT_EQ(Loaded("4k3QQQQQ/8Q/88R/8/8/8/8/4K3 w - -"), kings) << "nothing beyond the h-file";
    EXPECT_EQ(Loaded("4k3/8/8/8/8/8/8/4K3 w"), kings);
    LoadFEN("");
    EXPECT_EQ(board.PieceCount, 0u);
    EXPECT_EQ(board.SideToMove, BLACK);
    LoadFEN("/////////////////");
    EXPECT_EQ(board.PieceCount, 0u);
    LoadFEN("KQRBNPkqrbnp w");
    EXPECT_EQ(board.PieceCount, 8u);
}

TEST_F(FenTest, ReadsSideAndRights) {
    const auto sideOf = [](const char* side) {
        LoadFEN((std::string("4k3/8/8/8/8/8/8/4K3 ") + side + " - -").c_str());
        return board.SideToMove;
    };
    EXPECT_EQ(sideOf("w"), WHITE);
    EXPECT_EQ(sideOf("b"), BLACK);
    EXPECT_EQ(sideOf("W"), BLACK);
    EXPECT_EQ(sideOf("x"), BLACK);
    const auto rightsOf = [](const char* placement, const char* rights) {
        LoadFEN((std::string(placement) + " w " + rights + " - 7 9").c_str());
        EXPECT_EQ(board.Fifty, 0u);
        return board.CastlingFlags;
    };
    constexpr char ALL[] = "r3k2r/8/8/8/8/8/8/R3K2R";
    EXPECT_EQ(rightsOf(ALL, "KQkq"), 15u);
    EXPECT_EQ(rightsOf(ALL, "qk"), 12u);
    EXPECT_EQ(rightsOf(ALL, "KxHqq"), 9u);
    EXPECT_EQ(rightsOf(ALL, "-"), 0u);
    // Rights are cut back to what the men allow.
    EXPECT_EQ(rightsOf("r3k2r/8/8/8/8/8/8/R3K3", "KQkq"), 14u);
    EXPECT_EQ(rightsOf("r3k2r/8/8/8/8/8/8/4K2R", "KQkq"), 13u);
    EXPECT_EQ(rightsOf("4k2r/8/8/8/8/8/8/R3K2R", "KQkq"), 7u);
    EXPECT_EQ(rightsOf("r3k3/8/8/8/8/8/8/R3K2R", "KQkq"), 11u);
    EXPECT_EQ(rightsOf("r2k3r/8/8/8/8/8/8/R3K2R", "KQkq"), 3u);
    EXPECT_EQ(rightsOf("r3k2r/8/8/8/8/8/8/R4K1R", "KQkq"), 12u);
    EXPECT_EQ(rightsOf("r3k2R/8/8/8/8/8/8/r3K2R", "KQkq"), 9u) << "a rook of the other side is none";
}

TEST_F(FenTest, ReadsEnPassantByThePawnsOwnSquare) {
    const auto lastMoveOf = [](const char* fen) {
        LoadFEN(fen);
        EXPECT_EQ(HistoryLength, LastMove() == NO_MOVE ? 0 : 1);
        return std::string(MoveToText(LastMove()));
    };
    constexpr char MOVED[] = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq ";
    EXPECT_EQ(lastMoveOf((MOVED + std::string("e4 0 1")).c_str()), "e2e4");
    EXPECT_EQ(lastMoveOf((MOVED + std::string("E4")).c_str()), "e2e4");
    for (const char* field : {"e3", "-", "d4", "e5", "e", "", "i4", "e4"}) {
        const bool isGood = std::string(field) == "e4";
        EXPECT_EQ(lastMoveOf((MOVED + std::string(field)).c_str()), isGood ? "e2e4" : "0000") << field;
    }
    EXPECT_EQ(lastMoveOf("4k3/8/8/2PpP3/8/8/8/4K3 w - d5"), "d7d5");
    EXPECT_EQ(lastMoveOf("4k3/8/8/2PpP3/8/8/8/4K3 b - d5"), "0000");
    EXPECT_EQ(lastMoveOf("4k3/8/8/2PpP3/8/8/8/4K3 w - c5"), "0000") << "that pawn is White's";
    EXPECT_EQ(lastMoveOf("4k3/8/8/2PnP3/8/8/8/4K3 w - d5"), "0000") << "that man is no pawn";
}

TEST_F(FenTest, WritesWithoutTheBlackKing) {
    EXPECT_EQ(GetFEN(), "rnbqbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - ");
    EXPECT_EQ(GetFEN("tail"), "rnbqbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - tail");
    LoadFEN(EN_PASSANT_BOTH_SIDES);
    EXPECT_EQ(GetFEN(), "43/8/8/2PpP3/8/8/8/4K3 w - d5 ");
    LoadFEN("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b Kq e4");
    EXPECT_EQ(GetFEN(), "rnbqbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b Kq ");
    // A pawn on the far edge of the next rank is no neighbour.
    LoadFEN("4k3/8/P7/7p/8/8/8/4K3 w - h5");
    EXPECT_EQ(GetFEN(), "43/8/P7/7p/8/8/8/4K3 w - ");
    LoadFEN("4k3/8/8/p7/7P/8/8/4K3 w - a5");
    EXPECT_EQ(GetFEN(), "43/8/8/p7/7P/8/8/4K3 w - ");
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
    return text;
}

TEST_F(FenTest, SurvivesGarbage) {
    std::mt19937_64 random(41);
    int playable = 0, faulty = 0;
    testing::internal::CaptureStdout();
    for (int i = 0; i < 20000; ++i) {
        std::string text = Mutate(NASTY_POSITIONS[random() % std::size(NASTY_POSITIONS)], random);
        if (random() % 8 == 0) text += text + text;
        LoadFEN(text.c_str());
        const Board before = board;
        const int length = HistoryLength;
        const bool isPlayable = FindPositionFault() == nullptr;
        EXPECT_TRUE(board == before) << text;
        PrintBoard();
        GetFEN();
        Perft(1);
        EXPECT_EQ(HistoryLength, length) << text;
        if (isPlayable) {
            EXPECT_TRUE(board == before) << text;
        }
        (isPlayable ? playable : faulty) += 1;
        if (HasFailure()) break;
    }
    testing::internal::GetCapturedStdout();
    EXPECT_GT(playable, 1000);
    EXPECT_GT(faulty, 1000);
}

}  // namespace
