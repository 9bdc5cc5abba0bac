#include "tests/process/engine.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <thread>

Engine::Engine(const std::string& path, const std::string& settings, const char* argument) {
    if (!settings.empty()) directory_.WriteFile("Kestrovan.ini", settings);
    signal(SIGPIPE, SIG_IGN);
    int toEngine[2], fromEngine[2];
    // Closed on exec, so that no other engine holds this one's input open.
    if (pipe2(toEngine, O_CLOEXEC) != 0 || pipe2(fromEngine, O_CLOEXEC) != 0 || (process_ = fork()) < 0) {
        throw std::runtime_error("no pipe or no process");
    }
    if (process_ == 0) {
        signal(SIGPIPE, SIG_DFL);
        dup2(toEngine[0], STDIN_FILENO);
        dup2(fromEngine[1], STDOUT_FILENO);
        if (chdir(directory_.Path().c_str()) == 0) execl(path.c_str(), path.c_str(), argument, nullptr);
        _exit(127);
    }
    close(toEngine[0]);
    close(fromEngine[1]);
    input_ = toEngine[1];
    output_ = fromEngine[0];
    fcntl(input_, F_SETFL, O_NONBLOCK);
}

Engine::~Engine() {
    CloseInput();
    close(output_);
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
}

void Engine::SendBytes(const std::string& bytes) {
    for (size_t sent = 0; sent < bytes.size();) {
        pollfd ends[2] = {{input_, POLLOUT, 0}, {output_, POLLIN, 0}};
        if (poll(ends, 2, SILENCE_LIMIT_MS) <= 0) throw std::runtime_error("the engine takes no input");
        if (ends[0].revents & POLLERR) return;
        if (ends[0].revents & POLLOUT) {
            const ssize_t count = write(input_, bytes.data() + sent, bytes.size() - sent);
            if (count > 0) sent += static_cast<size_t>(count);
        }
        // It must never wait for us to read while we wait for it.
        if ((ends[1].revents & (POLLIN | POLLHUP)) && !Fill(0)) return;
    }
}

void Engine::CloseInput() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

bool Engine::Fill(int limitMs) {
    pollfd end{output_, POLLIN, 0};
    if (poll(&end, 1, limitMs) <= 0) throw std::runtime_error("the engine is silent; so far: " + unread_);
    char buffer[65536];
    const ssize_t count = read(output_, buffer, sizeof buffer);
    if (count > 0) unread_.append(buffer, static_cast<size_t>(count));
    return count > 0;
}

std::string Engine::ReadLine() {
    size_t end = 0;
    while ((end = unread_.find('\n')) == std::string::npos) {
        if (!Fill(SILENCE_LIMIT_MS)) throw std::runtime_error("the output has ended behind: " + unread_);
    }
    const std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
}

std::vector<std::string> Engine::ReadUntil(const std::string& prefix) {
    std::vector<std::string> lines;
    do {
        lines.push_back(ReadLine());
    } while (!lines.back().starts_with(prefix));
    return lines;
}

std::vector<std::string> Engine::Ask(const std::string& line) {
    SendBytes(line + "\nisready\n");
    std::vector<std::string> lines = ReadUntil("readyok");
    lines.pop_back();
    return lines;
}

std::string Engine::ReadToEnd(int limitMs) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(limitMs);
    CloseInput();
    while (Fill(limitMs)) {
        if (Clock::now() > end) throw std::runtime_error("the output does not end; so far: " + unread_);
    }
    return std::move(unread_);
}

int Engine::WaitForExit(int limitMs) {
    constexpr int STEP_MS = 5;
    for (int waited = 0; waited <= limitMs; waited += STEP_MS) {
        int status = 0;
        if (waitpid(process_, &status, WNOHANG) == process_) {
            process_ = -1;
            return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(STEP_MS));
    }
    throw std::runtime_error("the engine does not end");
}
