#include "core/editboard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "core/positionfault.h"
#include "platform/input.h"
#include "tests/support/pipeinput.h"
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

TEST_F(EditBoardTest, SetsUpAPosition) {
    LoadFEN("rn1qk3/8/8/8/4P3/8/8/R1B1K2R w KQq -");
    Board expected = board;
    ResetBoard();
    MakeMove(TextToMove("e2e4"), 1);
    board.SideToMove = WHITE;
    EXPECT_EQ(Edit("#\nKe1 Ra1 Rh1\r\nPe4c\nKE8\nra8 QD8nb8c Bc1\n.\n"), "");
    std::copy_n(board.PieceNumber[KING], 2, expected.PieceNumber[KING]);  // only ever counted up
    EXPECT_TRUE(board == expected);
    EXPECT_EQ(GamePly(), 0);
}

TEST_F(EditBoardTest, DerivesTheRightsAndReportsErrors) {
    const struct {
        const char *Text, *Printed;
        unsigned Rights;
    } rows[] = {
        {".", "", 15},
        {"#ke2ra1rh1cke8rh8.", "", BLACK_SHORT},                       // king and rook must be at home
        {"#ke1ra1cke8ra1.", "", 0},                                    // and the rook of the king's side
        {"#ke1cke8c pi4 p!\nrh1.\n", "ErrorErrorError", WHITE_SHORT},  // a bad file takes one letter along
        {"#ke1 p.!", "Error", 0},  // the end mark and the end of input are never swallowed
        {"#ke1 pe.!", "Error", 0},
        {"#ke1 pe", "Error", 0},
        {"", "", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Edit(row.Text), row.Printed) << row.Text;
        EXPECT_EQ(board.CastlingFlags, row.Rights) << row.Text;
    }
}

TEST_F(EditBoardTest, LeavesTheRestOfTheInput) {
    const PipeInput input("#ke1\ncke8. go\nnext\n");
    EditBoard();
    for (const char* rest : {" go", "next"}) {
        std::string line;
        ASSERT_TRUE(ReadLine(line));
        EXPECT_EQ(line, rest);
    }
}

TEST_F(EditBoardTest, TakesMenOffTheSquareOnly) {
    Edit("xe2.");
    EXPECT_EQ(board.PieceOn[12], unsigned{EMPTY});
    EXPECT_EQ(board.FileOccupancy[4], 0xC1u);
    EXPECT_EQ(board.RankOccupancy[1], 0xEFu);
    EXPECT_EQ(board.PieceCount, 32u);
    EXPECT_STREQ(FindPositionFault(), "men were taken off without clearing the board");
    EXPECT_TRUE(HasPhantomMen());
}

}  // namespace
