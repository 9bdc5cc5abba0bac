#pragma once

#include <string>

// A new empty directory, removed with everything in it at the end.
class TempDirectory {
  public:
    TempDirectory();
    ~TempDirectory();
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;

    const std::string& Path() const { return path_; }
    std::string FilePath(const std::string& name) const { return path_ + "/" + name; }
    void WriteFile(const std::string& name, const std::string& text) const;
    std::string ReadFile(const std::string& name) const;  // empty when there is none

  private:
    std::string path_;
};
