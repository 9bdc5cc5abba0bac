#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// A file that stays open, is read and written at places instead of in order, and may be open in other
// processes, too. posix.cpp and windows.cpp implement it. Not copied; closed at the end of its life.
class SharedFile {
  public:
    enum Access { READ_ONLY, READ_WRITE, READ_WRITE_OR_CREATE };

    constexpr SharedFile() = default;
    ~SharedFile() { Close(); }
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    // Opens a regular file in place of the one that is open; false, and nothing is open, when it can't.
    bool Open(const std::string& path, Access access);
    void Close();
    bool IsOpen() const { return handle_ != NONE; }
    bool IsWritable() const { return IsOpen() && isWritable_; }

    // In bytes; -1 when it can't be told.
    int64_t Length() const;

    // Reads up to `size` bytes from the place on; returns how many there were.
    size_t ReadAt(int64_t place, void* bytes, size_t size) const;

    // Writes all the bytes, or returns false. What has been written survives the end of the process, however
    // it comes; of a write that the end interrupts, a beginning may stand.
    bool WriteAt(int64_t place, const void* bytes, size_t size);

    // Keeps the locks of others out until Unlock. Waits a moment for another to let go; false when it
    // doesn't.
    bool Lock();
    void Unlock();

  private:
    static constexpr intptr_t NONE = -1;

    bool TryLock();

    intptr_t handle_ = NONE;
    bool isWritable_ = false;
};

// Holds the lock of a file, if it could be had, while it lives.
class FileLock {
  public:
    explicit FileLock(SharedFile& file) : file_(file), isHeld_(file.IsWritable() && file.Lock()) {}
    ~FileLock() {
        if (isHeld_) file_.Unlock();
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool IsHeld() const { return isHeld_; }

  private:
    SharedFile& file_;
    const bool isHeld_;
};
