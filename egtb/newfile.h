#pragma once

#include <cstddef>
#include <fstream>
#include <string>

// A file that stands under its name only when it is complete; until then, and if it is given up, whatever had
// the name before stays.
class NewFile {
  public:
    explicit NewFile(const std::string& path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void Write(const void* bytes, size_t count);

    // Gives the file its name. Throws TableError when that, or a Write before, has failed.
    void Complete();

    // What a program that was killed has left of such a file.
    static void RemoveUnfinished(const std::string& path);

  private:
    const std::string path_, unfinishedPath_;
    std::ofstream stream_;
};
