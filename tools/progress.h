#pragma once

#include <cstdint>
#include <string>

// A line on the error stream from time to time: often at a terminal, where it is overwritten, else seldom and
// only if the work takes its time.
class Progress {
  public:
    Progress();
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Whether it is time for another line, which is then to be shown.
    bool IsDue();
    void Show(const std::string& text);

    // Makes room for another message.
    void Clear();

    // Since the beginning.
    double Seconds() const;

  private:
    const bool isSeen_;
    size_t shown_ = 0;  // characters on the terminal
    const int64_t start_;
    int64_t last_;
};

// The most memory that the process has held, in bytes; 0 where the system doesn't say.
int64_t PeakMemory();
