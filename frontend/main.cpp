#include <cstdio>
#include <cstring>

#include "frontend/bench.h"
#include "frontend/startup.h"
#include "platform/input.h"

namespace {

constexpr int USAGE_STATUS = 2;

// The bench as a program of its own, which reads no input.
[[noreturn]] void RunBenchProgram() {
    EndInput();
    StartUp();
    ReportTablebases();
    RunBench();
    ShutDown();
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount == 2 && std::strcmp(arguments[1], "bench") == 0) RunBenchProgram();
    if (argumentCount > 1) {
        std::fputs("usage: kestrovan [bench]\n", stderr);
        return USAGE_STATUS;
    }
    StartUp();
    RunCommandLoop();
}
