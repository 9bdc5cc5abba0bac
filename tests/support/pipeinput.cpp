#include "tests/support/pipeinput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/input.h"

// A test can't go on without its input.
static void Require(bool condition) {
    if (!condition) std::abort();
}

PipeInput::PipeInput() : savedInput_(dup(STDIN_FILENO)) {
    int ends[2];
    Require(pipe(ends) == 0);
    Require(fcntl(ends[1], F_SETPIPE_SZ, 512 * 1024) > 0);
    Require(dup2(ends[0], STDIN_FILENO) == STDIN_FILENO);
    close(ends[0]);
    writeEnd_ = ends[1];
    ResetInput();
}

PipeInput::PipeInput(const std::string& text) : PipeInput() {
    Write(text);
    Close();
}

PipeInput::~PipeInput() {
    Close();
    close(STDIN_FILENO);
    if (savedInput_ >= 0) {
        dup2(savedInput_, STDIN_FILENO);
        close(savedInput_);
    }
    ResetInput();
}

void PipeInput::Write(const std::string& bytes) const {
    Require(write(writeEnd_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
}

void PipeInput::Close() {
    if (writeEnd_ >= 0) close(writeEnd_);
    writeEnd_ = -1;
}
