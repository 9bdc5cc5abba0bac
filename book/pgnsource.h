#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

// The bytes of a game file, with every kind of line end made LF and a byte-order mark left out. Keeps one
// buffer, however long the lines are.
class PgnSource {
  public:
    static constexpr int END = -1;
    static constexpr size_t LONGEST_PEEK = 64;  // bytes

    // The stream stays the caller's; it is read ahead.
    explicit PgnSource(std::FILE* stream);

    // The byte `ahead` places on, or END; line ends as the file has them.
    int Peek(size_t ahead = 0) {
        if (place_ + ahead < end_) return bytes_[place_ + ahead];
        return PeekBeyond(ahead);
    }

    // Takes the next byte; END, again and again, behind the last.
    int Take() {
        const int byte = Peek();
        if (byte == END) return END;
        ++place_;
        previous_ = byte == '\r' ? TakeLineEnd() : byte;
        line_ += previous_ == '\n';
        return previous_;
    }

    // Takes bytes up to and without the next line end.
    void SkipLine();

    // Whether the text comes next; it is at most LONGEST_PEEK long.
    bool StartsWith(const char* text);

    bool IsAtLineStart() const { return previous_ == '\n'; }
    int64_t Line() const { return line_; }  // of the next byte, from 1

    // Whether the end is that of what could be read, not of the file.
    bool HasFailed() const { return std::ferror(stream_) != 0; }

  private:
    int PeekBeyond(size_t ahead);
    int TakeLineEnd();

    std::FILE* stream_;
    std::vector<unsigned char> bytes_;
    size_t place_ = 0, end_ = 0;
    int previous_ = '\n';
    int64_t line_ = 1;
};
