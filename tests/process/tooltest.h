#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "tests/support/tempdirectory.h"

// A companion program from outside, run in a directory of its own.
class ToolTest : public testing::Test {
  protected:
    explicit ToolTest(const char* program) : program_(program) {}

    // Runs the program in the test's directory; returns its exit status.
    int Run(const std::string& arguments, const std::string& output = "output",
            const std::string& preparation = ":") {
        const std::string command = "cd '" + directory_.Path() + "' && " + preparation + "; '" + program_ +
                                    "' " + arguments + " >'" + output + "' 2>'errors' </dev/null";
        const int status = std::system(command.c_str());
        output_ = directory_.ReadFile("output");
        errors_ = directory_.ReadFile("errors");
        EXPECT_TRUE(WIFEXITED(status)) << command << '\n' << errors_;
        return WEXITSTATUS(status);
    }

    // Runs the program with a request that it must refuse, saying why on the error stream only.
    void ExpectRefusal(const std::string& arguments, const std::string& reason) {
        EXPECT_NE(Run(arguments), 0) << arguments;
        EXPECT_NE(errors_.find(reason), std::string::npos) << arguments << ": " << errors_;
        EXPECT_EQ(output_, "") << arguments;
    }

    bool Says(const std::string& text) const { return output_.find(text) != std::string::npos; }

    const std::string program_;
    TempDirectory directory_;
    std::string output_, errors_;
};
