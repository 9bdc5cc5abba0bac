#include "egtb/newfile.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "egtb/tableerror.h"

static std::string UnfinishedPath(const std::string& path) {
    return path + ".new";
}

NewFile::NewFile(const std::string& path)
    : path_(path), unfinishedPath_(UnfinishedPath(path)), stream_(unfinishedPath_, std::ios::binary) {}

NewFile::~NewFile() {
    stream_.close();
    // Nothing is left there after Complete.
    std::remove(unfinishedPath_.c_str());
}

void NewFile::Write(const void* bytes, size_t count) {
    stream_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
}

void NewFile::Complete() {
    stream_.close();
    std::error_code error;
    if (stream_) std::filesystem::rename(unfinishedPath_, path_, error);
    if (!stream_ || error) throw TableError(path_ + " can't be written");
}

void NewFile::RemoveUnfinished(const std::string& path) {
    std::remove(UnfinishedPath(path).c_str());
}
