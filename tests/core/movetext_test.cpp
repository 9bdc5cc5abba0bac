#include "core/movetext.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "tests/support/positions.h"
#include "tests/support/walker.h"

namespace {

using MoveTextTest = CoreTest;

TEST_F(MoveTextTest, ReadsBackWhatItWrites) {
    VisitPositions(5000 / WORK_DIVISOR, 51, [] {
        for (const Move move : LegalMoves()) {
            const std::string text = MoveToText(move);
            ASSERT_TRUE(LooksLikeMove(text.c_str())) << text;
            ASSERT_EQ(TextToMove(text.c_str()), move) << text;
        }
    });
}

TEST_F(MoveTextTest, WritesAndReadsItsForms) {
    EXPECT_STREQ(MoveToText(NO_MOVE), "0000");
    EXPECT_STREQ(MoveToPieceText(NO_MOVE), "-");
    LoadFEN(PROMOTION_CAPTURES_ROOK);
    const Move queen = BuildMove(49, A8, PAWN, ROOK, QUEEN), none = BuildMove(49, A8, PAWN, ROOK);
    EXPECT_STREQ(MoveToText(queen), "b7a8q");
    EXPECT_STREQ(MoveToPieceText(queen), "Pb7a8");
    for (const char* text : {"b7a8q", "B7A8Q", "b7a8q and so on"}) EXPECT_EQ(TextToMove(text), queen) << text;
    for (const char* text : {"b7a8", "b7a8k", "b7a8p", "b7a8 ", "b7a8="}) {
        EXPECT_EQ(TextToMove(text), none) << text;
    }
}

TEST_F(MoveTextTest, KnowsAMoveByItsSquares) {
    for (const char* text : {"a1h8", "E2E4", "e2e4, then more"}) {
        EXPECT_TRUE(LooksLikeMove(text)) << text;
    }
    for (const char* text : {"", "e2e", "e2e9", "i2e4", "e0e4", "2e4e", "e2-e4", "\xE5\x32\x65\x34"}) {
        EXPECT_FALSE(LooksLikeMove(text)) << text;
    }
}

TEST_F(MoveTextTest, CutsTokensOutOfGames) {
    char text[] = "Nf3+ exd8=Q O-O-O\nQ:h7 9\0Rab1! 12345678012345 123456780123456";
    std::FILE* file = fmemopen(text, sizeof text - 1, "r");
    for (const char* token : {"Nf3", "", "exd8=Q", "O-O-O", "Q:h7", "", "", "Rab1", "", "12345678012345"}) {
        EXPECT_FALSE(ReadMoveToken(file));
        EXPECT_STREQ(MoveToken, token);
    }
    const auto readTooLong = [=] {
        dup2(STDERR_FILENO, STDOUT_FILENO);  // so that the message can be seen
        ReadMoveToken(file);
    };
    EXPECT_EXIT(readTooLong(), testing::ExitedWithCode(2),
                "Error parsing move \\(move too long\\): 123456780123456\\.\\.\\.\n");
    std::fseek(file, -2, SEEK_END);
    for (const char* token : {"56", ""}) {
        EXPECT_TRUE(ReadMoveToken(file)) << "ended by the file";
        EXPECT_STREQ(MoveToken, token);
    }
    std::fclose(file);
}

}  // namespace
