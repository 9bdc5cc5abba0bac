#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

// A file for what doesn't fit into memory, which nobody else sees and which is gone afterwards, also when the
// program is interrupted where the system allows it. Every failure throws a BookError.
class ScratchFile {
  public:
    explicit ScratchFile(const std::string& path);
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    int64_t Length() const { return length_; }  // bytes

    // Writes behind the end.
    void Append(const void* bytes, size_t count);

    // Reads bytes that have been written.
    void Read(int64_t place, void* bytes, size_t count);

  private:
    [[noreturn]] void Fail(const char* what) const;

    std::string path_;
    std::fstream stream_;
    int64_t length_ = 0;
    bool isRemoved_ = false;
};
