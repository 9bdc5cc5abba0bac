#include "core/editboard.h"

#include <gtest/gtest.h>

#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "platform/input.h"
#include "tests/support/pipeinput.h"
#include "tests/support/positions.h"
#include "tests/support/slowposition.h"
#include "tests/support/walker.h"

namespace {

using EditBoardTest = CoreTest;

// Edits with the text and returns what was printed; the input ends behind it.
std::string Edit(const std::string& text) {
    const PipeInput input(text);
    testing::internal::CaptureStdout();
    EditBoard();
    return testing::internal::GetCapturedStdout();
}

std::string Position() {
    return SlowPosition::FromBoard().Text();
}

TEST_F(EditBoardTest, SetsUpAPositionAndItsRights) {
    MakeMove(TextToMove("e2e4"), 1);
    board.SideToMove = WHITE;
    EXPECT_EQ(Edit("#\nKe1 Ra1 Rh1\r\nPe4c\nKE8\nra8 QD8nb8c Bc1\n.\n"), "");
    EXPECT_EQ(Position(), "rn1qk111/11111111/11111111/11111111/1111P111/11111111/11111111/R1B1K11R w KQq -");
    EXPECT_TRUE(IsBoardConsistent());
    EXPECT_EQ(FindPositionFault(), nullptr);
    EXPECT_EQ(GamePly(), 0);
    EXPECT_EQ(board.KingSquare[BLACK], 60u);
    // Rights need king and rook at home.
    Edit("#ke1rg1cke7ra8rh8.");
    EXPECT_EQ(board.CastlingFlags, 0u);
    Edit("#ke2ra1rh1cke8rh8.");
    EXPECT_EQ(board.CastlingFlags, unsigned{BLACK_SHORT});
    // Nothing but the end mark keeps the men.
    LoadFEN(CASTLING_ALL);
    Edit(".");
    EXPECT_EQ(board.CastlingFlags, 15u);
}

TEST_F(EditBoardTest, SaysErrorAndGoesOn) {
    EXPECT_EQ(Edit("#ke1cke8cz.\n"), "Error");
    EXPECT_EQ(Edit("#ke1cke8c pi4 p!\npe4.\n"), "ErrorErrorError") << "a bad file takes one letter along";
    EXPECT_EQ(board.PieceOn[28], unsigned{PAWN});
    // The end mark and the end of input are never swallowed.
    EXPECT_EQ(Edit("#ke1 p."), "Error");
    EXPECT_EQ(Edit("#ke1 pe."), "Error");
    EXPECT_EQ(Edit("#ke1 pe"), "Error");
    EXPECT_EQ(Edit("#"), "");
    EXPECT_EQ(Edit(""), "");
}

TEST_F(EditBoardTest, LeavesTheRestOfTheInput) {
    const PipeInput input("#ke1\ncke8. go\nnext\np.\nlast\n");
    std::string line;
    EditBoard();
    ASSERT_TRUE(ReadLine(line));
    EXPECT_EQ(line, " go");
    ASSERT_TRUE(ReadLine(line));
    EXPECT_EQ(line, "next");
    testing::internal::CaptureStdout();
    EditBoard();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error");
    ASSERT_TRUE(ReadLine(line));
    EXPECT_EQ(line, "last");
    EXPECT_FALSE(ReadLine(line));
}

TEST_F(EditBoardTest, TakesMenOffTheSquareOnly) {
    Edit("xe2.");
    EXPECT_EQ(board.PieceOn[12], unsigned{EMPTY});
    EXPECT_EQ(board.Occupied[WHITE] >> 12 & 1, 0u);
    EXPECT_EQ(board.FileOccupancy[4], 0xC1u);
    EXPECT_EQ(board.RankOccupancy[1], 0xEFu);
    EXPECT_EQ(board.PieceCount, 32u);
    EXPECT_STREQ(FindPositionFault(), "men were taken off without clearing the board");
    EXPECT_TRUE(HasPhantomMen());
    LoadFEN(START);
    EXPECT_EQ(FindPositionFault(), nullptr);
    EXPECT_FALSE(HasPhantomMen());
}

}  // namespace
