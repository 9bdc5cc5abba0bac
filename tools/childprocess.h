#pragma once

#include <cstdint>
#include <string>

// Another program, with pipes to and from it. All that a match needs of the system is in childprocess.cpp,
// which is for POSIX.
class ChildProcess {
  public:
    // Starts the program, by its path or by a name that the system looks up, in a directory. It gets a
    // process group of its own: what interrupts us from the keyboard doesn't reach it. A program that can't
    // be started ends at once, with status 127. Throws std::runtime_error when there is no process to be had.
    ChildProcess(const std::string& program, const std::string& directory);

    // Ends what still runs.
    ~ChildProcess() { End(0); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Sends a line. What a program that has ended or doesn't read can't take is dropped: it won't answer
    // either.
    void Send(const std::string& line);

    enum class Reading { LINE, SILENCE, END, INTERRUPTED };

    // Reads the next line, of output or errors, without its end; waits for it until ClockMs() is `deadlineMs`
    // or IsInterrupted. Lines are cut after LINE_LIMIT bytes.
    Reading ReadLine(std::string& line, int64_t deadlineMs);
    static constexpr size_t LINE_LIMIT = 65536;

    // Closes the pipe to the program, gives it some time to end by itself and then kills it. Returns how it
    // has ended: "has ended with status 1".
    std::string End(int graceMs);

  private:
    bool TakeLine(std::string& line);

    int process_ = -1;
    int input_ = -1, output_ = -1;  // of the program
    std::string unread_;
    std::string ending_;  // once it has ended
};
