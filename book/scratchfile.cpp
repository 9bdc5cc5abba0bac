#include "book/scratchfile.h"

#include <cassert>
#include <cstdio>

#include "book/bookerror.h"

ScratchFile::ScratchFile(const std::string& path) : path_(path) {
    constexpr auto MODE = std::ios::in | std::ios::out | std::ios::binary | std::ios::trunc;
    stream_.open(path, MODE);
    if (!stream_) Fail("make the temporary file");
    // Most systems let go of the name while the file is open.
    isRemoved_ = std::remove(path.c_str()) == 0;
}

ScratchFile::~ScratchFile() {
    stream_.close();
    if (!isRemoved_) std::remove(path_.c_str());
}

void ScratchFile::Append(const void* bytes, size_t count) {
    stream_.seekp(length_);
    stream_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    stream_.flush();
    if (!stream_) Fail("write to the temporary file");
    length_ += static_cast<int64_t>(count);
}

void ScratchFile::Read(int64_t place, void* bytes, size_t count) {
    assert(place + static_cast<int64_t>(count) <= length_);
    stream_.seekg(place);
    stream_.read(static_cast<char*>(bytes), static_cast<std::streamsize>(count));
    if (!stream_) Fail("read the temporary file");
}

void ScratchFile::Fail(const char* what) const {
    throw BookError(std::string("can't ") + what + " " + path_);
}
