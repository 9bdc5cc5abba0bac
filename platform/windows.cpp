#include <fcntl.h>
#include <io.h>
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>

#include "platform/platform.h"
#include "platform/sharedfile.h"
#include "platform/workers.h"

int64_t ClockMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

namespace {

enum class InputKind { CONSOLE, FILE, PIPE, OTHER };

HANDLE InputHandle() {
    return GetStdHandle(STD_INPUT_HANDLE);
}

bool IsPeekable() {
    return PeekNamedPipe(InputHandle(), nullptr, 0, nullptr, nullptr, nullptr) != 0 ||
           GetLastError() == ERROR_BROKEN_PIPE;
}

// Examines standard input. A console loses mouse and window events, which are not lines.
InputKind ExamineInput() {
    DWORD mode = 0;
    if (GetConsoleMode(InputHandle(), &mode) != 0) {
        SetConsoleMode(InputHandle(), mode & ~(ENABLE_MOUSE_INPUT | ENABLE_WINDOW_INPUT));
        FlushConsoleInputBuffer(InputHandle());
        return InputKind::CONSOLE;
    }
    if (GetFileType(InputHandle()) == FILE_TYPE_DISK) return InputKind::FILE;
    return IsPeekable() ? InputKind::PIPE : InputKind::OTHER;
}

// Asked once, on first use: while a thread reads, some of the questions wait.
InputKind KindOfInput() {
    static const InputKind kind = ExamineInput();
    return kind;
}

size_t ReadInputHandle(char* buffer, size_t size) {
    // Somebody may have written nothing into a pipe: that is not its end. But some pipes that have ended read
    // as nothing for ever.
    const bool isPipe = KindOfInput() == InputKind::PIPE || KindOfInput() == InputKind::OTHER;
    for (int tries = isPipe ? 100 : 1; tries > 0; --tries) {
        DWORD count = 0;
        if (ReadFile(InputHandle(), buffer, static_cast<DWORD>(size), &count, nullptr) == 0) return 0;
        if (count > 0) return count;
    }
    return 0;
}

// Waits for standard input of other kinds, such as pipes that a system beneath has made, in a thread of its
// own, which touches nothing else: nothing tells beforehand whether a read of them would wait.
class InputReader {
  public:
    InputReader() {
        std::thread([this] { Run(); }).detach();
    }

    bool IsWaiting() {
        const std::lock_guard lock(mutex_);
        return IsReady();
    }

    size_t Take(char* buffer, size_t size) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return IsReady(); });
        const size_t count = std::min(size, end_ - start_);
        std::copy_n(bytes_ + start_, count, buffer);
        start_ += count;
        changed_.notify_one();
        return count;
    }

  private:
    bool IsReady() const { return start_ < end_ || hasEnded_; }

    void Run() {
        for (std::unique_lock lock(mutex_); !hasEnded_; changed_.notify_one()) {
            changed_.wait(lock, [this] { return start_ == end_; });
            // What has been taken belongs to this thread until there are new bytes.
            lock.unlock();
            const size_t count = ReadInputHandle(bytes_, sizeof bytes_);
            lock.lock();
            start_ = 0;
            end_ = count;
            hasEnded_ = count == 0;
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;  // bytes have come, or have all been taken
    char bytes_[4096];
    size_t start_ = 0, end_ = 0;  // what of bytes_ has not been taken
    bool hasEnded_ = false;
};

// Started on first use and never destroyed: the thread outlives main.
InputReader& Reader() {
    static InputReader& reader = *new InputReader;
    return reader;
}

}  // namespace

bool IsInputWaiting() {
    DWORD count = 0;
    switch (KindOfInput()) {
        case InputKind::CONSOLE:
            // One event is always pending on some systems: the release of the key that ended the last line.
            return GetNumberOfConsoleInputEvents(InputHandle(), &count) != 0 && count > 1;
        case InputKind::FILE:
            return true;
        case InputKind::PIPE:
            // One that can no longer be peeked at has been closed: the read that follows reports the end.
            return PeekNamedPipe(InputHandle(), nullptr, 0, nullptr, &count, nullptr) == 0 || count > 0;
        default:
            return Reader().IsWaiting();
    }
}

bool IsInputTyped() {
    return KindOfInput() == InputKind::CONSOLE;
}

size_t ReadRawInput(char* buffer, size_t size) {
    return KindOfInput() == InputKind::OTHER ? Reader().Take(buffer, size) : ReadInputHandle(buffer, size);
}

void PrepareStandardStreams() {
    _setmode(_fileno(stdout), _O_BINARY);
}

void* AllocateTable(size_t bytes) {
    return std::malloc(bytes);
}

void FreeTable(void* table) {
    std::free(table);
}

int64_t FileLength(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return -1;
    const int64_t length = _filelengthi64(_fileno(file));
    std::fclose(file);
    return length;
}

std::vector<std::string> FindFiles(const std::string& directory, const std::string& suffix) {
    std::vector<std::string> names;
    const std::string pattern = JoinPath(directory, "*");
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        // Compared here: a pattern with the suffix would be held against short names, too.
        const std::string name = found.cFileName;
        if (name == "." || name == "..") continue;
        if (name.size() >= suffix.size() &&
            _stricmp(name.c_str() + name.size() - suffix.size(), suffix.c_str()) == 0) {
            names.push_back(name);
        }
    } while (FindNextFileA(search, &found) != 0);
    FindClose(search);
    return names;
}

std::string JoinPath(const std::string& directory, const std::string& name) {
    const bool isWhole = directory.empty() || directory.ends_with('\\') || directory.ends_with('/');
    return isWhole ? directory + name : directory + '\\' + name;
}

bool IsDriveReady(const std::string& directory) {
    constexpr int LETTERS = 26;
    static bool isChecked[LETTERS], isNotReady[LETTERS];
    if (directory.size() < 2 || directory[1] != ':') return true;
    const int drive = (directory[0] | 0x20) - 'a';
    if (drive < 0 || drive >= LETTERS || isChecked[drive]) return true;
    if (isNotReady[drive] || (GetLogicalDrives() & 1u << drive) == 0) return false;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((directory.substr(0, 2) + "\\*").c_str(), &found);
    isNotReady[drive] = search == INVALID_HANDLE_VALUE && GetLastError() == ERROR_NOT_READY;
    isChecked[drive] = !isNotReady[drive];
    if (search != INVALID_HANDLE_VALUE) FindClose(search);
    return isChecked[drive];
}

std::string ProgramDirectory() {
    char path[MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    if (length == 0 || length == MAX_PATH) return "";
    const std::string program(path, length);
    return program.substr(0, program.rfind('\\') + 1);
}

namespace {

HANDLE AsHandle(intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// The place of a read, a write or a lock.
OVERLAPPED At(int64_t place) {
    OVERLAPPED overlapped{};
    overlapped.Offset = static_cast<DWORD>(place);
    overlapped.OffsetHigh = static_cast<DWORD>(place >> 32);
    return overlapped;
}

// Locks keep others from reading what they cover, so they cover a byte that no file has.
constexpr int64_t LOCK_PLACE = int64_t{1} << 62;

}  // namespace

bool SharedFile::Open(const std::string& path, Access access) {
    Close();
    const DWORD rights = access == READ_ONLY ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    const DWORD creation = access == READ_WRITE_OR_CREATE ? OPEN_ALWAYS : OPEN_EXISTING;
    const HANDLE handle = CreateFileA(path.c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    if (GetFileType(handle) != FILE_TYPE_DISK) {
        CloseHandle(handle);
        return false;
    }
    handle_ = reinterpret_cast<intptr_t>(handle);
    isWritable_ = access != READ_ONLY;
    return true;
}

void SharedFile::Close() {
    if (IsOpen()) CloseHandle(AsHandle(handle_));
    handle_ = NONE;
}

int64_t SharedFile::Length() const {
    LARGE_INTEGER length{};
    return GetFileSizeEx(AsHandle(handle_), &length) != 0 ? length.QuadPart : -1;
}

size_t SharedFile::ReadAt(int64_t place, void* bytes, size_t size) const {
    OVERLAPPED start = At(place);
    DWORD count = 0;
    return ReadFile(AsHandle(handle_), bytes, static_cast<DWORD>(size), &count, &start) != 0 ? count : 0;
}

bool SharedFile::WriteAt(int64_t place, const void* bytes, size_t size) {
    OVERLAPPED start = At(place);
    DWORD count = 0;
    return WriteFile(AsHandle(handle_), bytes, static_cast<DWORD>(size), &count, &start) != 0 &&
           count == size;
}

bool SharedFile::TryLock() {
    OVERLAPPED start = At(LOCK_PLACE);
    return LockFileEx(AsHandle(handle_), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                      &start) != 0;
}

void SharedFile::Unlock() {
    OVERLAPPED start = At(LOCK_PLACE);
    UnlockFileEx(AsHandle(handle_), 0, 1, 0, &start);
}

// There is no copying a process here, so one does all the work and any memory is shared.
void* AllocateSharedMemory(size_t bytes) {
    return std::calloc(bytes, 1);
}

void FreeSharedMemory(void* memory, size_t) {
    std::free(memory);
}

bool RunWorkers(int count, const std::function<void(int)>& work, const std::function<void()>& whileWaiting) {
    for (int i = 0; i < count; ++i) {
        whileWaiting();
        work(i);
    }
    return true;
}
