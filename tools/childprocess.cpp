#include "tools/childprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "platform/platform.h"
#include "tools/interruption.h"

namespace {

constexpr int STEP_MS = 1;         // between two looks whether a program has ended
constexpr int ATTENTION_MS = 100;  // between two looks whether we are interrupted
constexpr int NO_PROGRAM = 127;    // the status of a program that can't be started

// In the new process, where nothing but system calls is safe.
[[noreturn]] void BecomeProgram(const char* program, const char* directory, int input, int output) {
    setpgid(0, 0);
    signal(SIGPIPE, SIG_DFL);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    if (chdir(directory) == 0) execlp(program, program, nullptr);
    _exit(NO_PROGRAM);
}

// Whether the process is over; its status stays to be asked for.
bool HasEnded(pid_t process) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           info.si_pid != 0;
}

std::string DescribeEnding(int status) {
    if (WIFSIGNALED(status)) return std::string("has been ended by a signal: ") + strsignal(WTERMSIG(status));
    if (WEXITSTATUS(status) == NO_PROGRAM) return "can't be started";
    return "has ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::string& directory) {
    signal(SIGPIPE, SIG_IGN);
    int in[2], out[2];
    // Closed on exec, so that no other program holds this one's ends open.
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || (process_ = fork()) < 0) {
        throw std::runtime_error("the system has no pipe or no process left");
    }
    if (process_ == 0) BecomeProgram(program.c_str(), directory.c_str(), in[0], out[1]);
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    output_ = out[0];
    fcntl(input_, F_SETFL, O_NONBLOCK);
}

void ChildProcess::Send(const std::string& line) {
    const std::string bytes = line + "\n";
    // A line that fits into the pipe goes at once, and our dialogue never leaves more than one in there.
    [[maybe_unused]] const ssize_t sent = write(input_, bytes.data(), bytes.size());
}

bool ChildProcess::TakeLine(std::string& line) {
    const size_t end = unread_.find('\n');
    if (end == std::string::npos && unread_.size() < LINE_LIMIT) return false;
    line = unread_.substr(0, std::min(end, LINE_LIMIT));
    unread_.erase(0, end == std::string::npos ? LINE_LIMIT : end + 1);
    if (line.ends_with('\r')) line.pop_back();
    return true;
}

ChildProcess::Reading ChildProcess::ReadLine(std::string& line, int64_t deadlineMs) {
    for (;;) {
        if (IsInterrupted) return Reading::INTERRUPTED;
        if (TakeLine(line)) return Reading::LINE;
        const int64_t left = deadlineMs - ClockMs();
        if (left <= 0) return Reading::SILENCE;
        pollfd end{output_, POLLIN, 0};
        if (poll(&end, 1, static_cast<int>(std::min<int64_t>(left, ATTENTION_MS))) <= 0) continue;
        char buffer[4096];
        const ssize_t count = read(output_, buffer, sizeof buffer);
        if (count <= 0) return Reading::END;
        unread_.append(buffer, static_cast<size_t>(count));
    }
}

std::string ChildProcess::End(int graceMs) {
    if (input_ >= 0) close(input_);
    input_ = -1;
    if (process_ > 0) {
        for (int waited = 0; waited < graceMs && !HasEnded(process_); waited += STEP_MS) {
            std::this_thread::sleep_for(std::chrono::milliseconds(STEP_MS));
        }
        // Not buried yet, so that the numbers are still its own; what it has started itself ends, too.
        kill(-process_, SIGKILL);
        kill(process_, SIGKILL);
        int status = 0;
        waitpid(process_, &status, 0);
        ending_ = DescribeEnding(status);
    }
    process_ = -1;
    if (output_ >= 0) close(output_);
    output_ = -1;
    return ending_;
}
