#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "book/bookfile.h"
#include "book/booklearning.h"
#include "book/booksettings.h"
#include "core/board.h"
#include "core/fen.h"
#include "core/makemove.h"
#include "core/movetext.h"
#include "tests/support/bookwriter.h"
#include "tests/support/positions.h"
#include "tests/support/tempdirectory.h"
#include "tests/support/walker.h"

// Tests with a book of their own; every one begins with the default settings and no book.
class BookTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        Reset();
    }
    void TearDown() override { Reset(); }

    // Writes the file and opens it as the book; returns what that prints.
    std::string Open(const std::string& bytes) {
        directory_.WriteFile("test.kvb", bytes);
        return Printed([this] { OpenBook(Path()); });
    }

    std::string Path() const { return directory_.FilePath("test.kvb"); }
    std::string Contents() const { return directory_.ReadFile("test.kvb"); }

    template <typename Procedure>
    static std::string Printed(Procedure procedure) {
        testing::internal::CaptureStdout();
        procedure();
        return testing::internal::GetCapturedStdout();
    }

    static void Play(const std::vector<const char*>& moves) {
        for (const char* move : moves) MakeMove(TextToMove(move), 1);
    }

    // The position on the board as the writer reads it.
    static std::string TextOfBoard() {
        std::string text;
        for (int i = 0; i < 64; ++i) {
            const int square = i ^ 56;
            const char letter = PIECE_LETTERS[board.PieceOn[square]];
            const bool isBlack = (board.Occupied[BLACK] & SquareBit(square)) != 0;
            if (i > 0 && i % 8 == 0) text += '/';
            text += letter == '.' ? '1' : static_cast<char>(isBlack ? std::tolower(letter) : letter);
        }
        return text + (board.SideToMove == WHITE ? " w" : " b");
    }

  private:
    static void Reset() {
        CloseBook();
        BookLearningMode = 0;
        UseBookWeights = UseBookLearning = BookLearningDone = 1;
        VarietyOfPlay = 10;
    }

    TempDirectory directory_;
};
