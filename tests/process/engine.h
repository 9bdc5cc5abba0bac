#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/tempdirectory.h"

// How long an engine may be silent, in milliseconds. Far above anything that is asked of it, so that a busy
// machine fails no test; running into it is always a failure.
constexpr int SILENCE_LIMIT_MS = 90'000;

// The program as a process, in a directory of its own, with pipes as standard input and output. Whatever
// goes wrong throws std::runtime_error, which fails a test. A process that still runs is killed at the end.
class Engine {
  public:
    // Starts the program; with `settings`, unless empty, as its settings file, and with one argument or none.
    explicit Engine(const std::string& path, const std::string& settings = "",
                    const char* argument = nullptr);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Sends a line, or bytes as they are. Output that arrives meanwhile is kept. Bytes that a program that
    // has ended can't take are dropped.
    void Send(const std::string& line) { SendBytes(line + "\n"); }
    void SendBytes(const std::string& bytes);

    // The next line of output, without its end.
    std::string ReadLine();

    // Lines up to the first that begins with `prefix`; that one is the last of them.
    std::vector<std::string> ReadUntil(const std::string& prefix);

    // Sends a line that is answered before the next one is read, and returns the lines of the answer.
    std::vector<std::string> Ask(const std::string& line);

    // Closes the input and returns what is left of the output, which must not go on beyond the limit.
    std::string ReadToEnd(int limitMs = SILENCE_LIMIT_MS);

    // Waits for the end: the exit status, or minus the signal.
    int WaitForExit(int limitMs = SILENCE_LIMIT_MS);

    const TempDirectory& Directory() const { return directory_; }

  private:
    void CloseInput();
    bool Fill(int limitMs);  // waits for output; false at its end

    TempDirectory directory_;
    pid_t process_ = -1;
    int input_ = -1;   // of the engine
    int output_ = -1;  // of the engine
    std::string unread_;
};
