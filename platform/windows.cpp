#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "platform/platform.h"

int64_t ClockMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

namespace {

// Standard input, examined on first use: a console loses mouse and window events, which are not lines.
struct InputHandle {
    HANDLE Handle = GetStdHandle(STD_INPUT_HANDLE);
    bool IsConsole = false;

    InputHandle() {
        DWORD mode = 0;
        IsConsole = GetConsoleMode(Handle, &mode) != 0;
        if (IsConsole) {
            SetConsoleMode(Handle, mode & ~(ENABLE_MOUSE_INPUT | ENABLE_WINDOW_INPUT));
            FlushConsoleInputBuffer(Handle);
        }
    }
};

const InputHandle& Input() {
    static const InputHandle input;
    return input;
}

}  // namespace

bool IsInputWaiting() {
    DWORD count = 0;
    if (Input().IsConsole) {
        // One event is always pending on some systems: the release of the key that ended the last line.
        return GetNumberOfConsoleInputEvents(Input().Handle, &count) != 0 && count > 1;
    }
    if (GetFileType(Input().Handle) == FILE_TYPE_DISK) return true;
    // A pipe that can't be peeked at has been closed: the read that follows reports the end of input.
    return PeekNamedPipe(Input().Handle, nullptr, 0, nullptr, &count, nullptr) == 0 || count > 0;
}

size_t ReadRawInput(char* buffer, size_t size) {
    const int count = _read(_fileno(stdin), buffer, static_cast<unsigned>(size));
    return count > 0 ? static_cast<size_t>(count) : 0;
}

void PrepareStandardStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
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
    std::string pattern = directory;
    if (!pattern.empty() && pattern.back() != '\\' && pattern.back() != '/') pattern += '\\';
    pattern += "*" + suffix;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        names.emplace_back(found.cFileName);
    } while (FindNextFileA(search, &found) != 0);
    FindClose(search);
    return names;
}
