#pragma once

#include <string>

// A pipe in the place of standard input, from construction to destruction. Both ends forget everything that
// was read.
class PipeInput {
  public:
    PipeInput();
    // With the whole input, which ends behind `text`.
    explicit PipeInput(const std::string& text);
    ~PipeInput();
    PipeInput(const PipeInput&) = delete;
    PipeInput& operator=(const PipeInput&) = delete;

    // Makes bytes readable; at most 512 KB may wait in the pipe.
    void Write(const std::string& bytes) const;

    // Ends the input.
    void Close();

  private:
    int savedInput_;
    int writeEnd_ = -1;
};
