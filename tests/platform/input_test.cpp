#include "platform/input.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/pipeinput.h"

namespace {

using Lines = std::vector<std::string>;

Lines RemainingLines() {
    Lines lines;
    for (std::string line; ReadLine(line);) lines.push_back(line);
    return lines;
}

TEST(InputTest, CutsLinesAtAnyLineEnd) {
    using namespace std::string_literals;
    const PipeInput input("one\ntwo\r\n\n\r\nth\rree\r\r\nn\0ul\nlast"s);
    EXPECT_EQ(RemainingLines(), (Lines{"one", "two", "", "", "th\rree\r", "n\0ul"s, "last"}));
    EXPECT_TRUE(HasInputEnded());
    EXPECT_EQ(RemainingLines(), Lines());
}

TEST(InputTest, CutsLongLinesAndReadsOn) {
    const std::string kept(LINE_LIMIT, 'x'), shorter(LINE_LIMIT - 1, 'y');
    const PipeInput input(kept + std::string(100'000, 'z') + "\n" + kept + "\r\n" + shorter + "\r\nnext\n");
    EXPECT_TRUE(RemainingLines() == (Lines{kept, kept, shorter, "next"}));
}

TEST(InputTest, ReturnsKeptLinesFirstAndInOrder) {
    const PipeInput input("a\nb\nc\n");
    std::string line;
    EXPECT_FALSE(HasKeptLine());
    ASSERT_TRUE(ReadLine(line));
    KeepLine("kept 1");
    KeepLine("kept 2");
    UnreadLine(line);
    EXPECT_TRUE(HasKeptLine());
    ASSERT_TRUE(TakeWaitingLine(line));
    EXPECT_EQ(line, "b") << "the input proper, past what was kept";
    EXPECT_FALSE(HasInputEnded());
    EXPECT_EQ(RemainingLines(), (Lines{"a", "kept 1", "kept 2", "c"}));
    EXPECT_FALSE(HasKeptLine());
}

TEST(InputTest, NeverWaitsForTheRestOfALine) {
    PipeInput input;
    std::string line;
    input.Write("hal");
    EXPECT_FALSE(TakeWaitingLine(line));
    input.Write("f\nrest");
    ASSERT_TRUE(TakeWaitingLine(line));
    EXPECT_EQ(line, "half");
    EXPECT_FALSE(TakeWaitingLine(line));
    input.Close();
    EXPECT_FALSE(HasInputEnded()) << "a line is left";
    ASSERT_TRUE(TakeWaitingLine(line));
    EXPECT_EQ(line, "rest");
    EXPECT_TRUE(HasInputEnded());
}

TEST(InputTest, WaitsForAWholeLine) {
    const PipeInput input;
    std::thread writer([&] {
        for (const char* part : {"po", "siti", "on\n"}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            input.Write(part);
        }
    });
    std::string line;
    EXPECT_TRUE(ReadLine(line));
    EXPECT_EQ(line, "position");
    writer.join();
}

TEST(InputTest, IgnoresWhatFollowsItsEnd) {
    const PipeInput input;
    input.Write("taken\ncut\nhal");
    std::string line;
    ASSERT_TRUE(TakeWaitingLine(line));
    EndInput();
    input.Write("f\n");
    EXPECT_TRUE(HasInputEnded());
    EXPECT_EQ(RemainingLines(), Lines());
}

}  // namespace
