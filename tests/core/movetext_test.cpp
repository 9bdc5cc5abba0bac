#include "core/movetext.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
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
    for (const char* text : {"a1h8", "E2E4", "e7e8q", "e2e4, then more", "h8a1\n"}) {
        EXPECT_TRUE(LooksLikeMove(text)) << text;
    }
    for (const char* text : {"", "e2e", "e2e9", "i2e4", "e0e4", "2e4e", "Nf3", "e2-e4", "\xE5\x32\x65\x34"}) {
        EXPECT_FALSE(LooksLikeMove(text)) << text;
    }
}

// A stream over the text that closes itself.
std::shared_ptr<std::FILE> Stream(const std::string& text) {
    std::FILE* file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    return {file, std::fclose};
}

TEST_F(MoveTextTest, CutsTokensOutOfGames) {
    using namespace std::string_literals;
    const auto stream = Stream("Nf3+ exd8=Q O-O-O\nQ:h7 9\0Rab1! 12345678012345 e4"s);
    for (const char* token : {"Nf3", "", "exd8=Q", "O-O-O", "Q:h7", "", "", "Rab1", "", "12345678012345"}) {
        EXPECT_FALSE(ReadMoveToken(stream.get()));
        EXPECT_STREQ(MoveToken, token);
    }
    EXPECT_TRUE(ReadMoveToken(stream.get())) << "ended by the file";
    EXPECT_STREQ(MoveToken, "e4");
    EXPECT_TRUE(ReadMoveToken(stream.get()));
    EXPECT_STREQ(MoveToken, "");
}

TEST_F(MoveTextTest, GivesUpOnATokenThatIsTooLong) {
    const auto stream = Stream("123456780123456");
    const auto read = [&] {
        dup2(STDERR_FILENO, STDOUT_FILENO);  // so that the message can be seen
        ReadMoveToken(stream.get());
    };
    EXPECT_EXIT(read(), testing::ExitedWithCode(2),
                "Error parsing move \\(move too long\\): 123456780123456\\.\\.\\.\n");
}

}  // namespace
