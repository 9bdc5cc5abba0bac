#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <strings.h>
#include <sys/file.h>
#include <sys/mman.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <vector>

#include "platform/platform.h"
#include "platform/sharedfile.h"
#include "platform/workers.h"

int64_t ClockMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool IsInputWaiting() {
    pollfd descriptor{STDIN_FILENO, POLLIN, 0};
    // A closed or broken descriptor counts as waiting, so that the read that follows reports the end of
    // input.
    return poll(&descriptor, 1, 0) > 0;
}

bool IsInputTyped() {
    return isatty(STDIN_FILENO) != 0;
}

size_t ReadRawInput(char* buffer, size_t size) {
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, buffer, size);
        if (count >= 0) return static_cast<size_t>(count);
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            // Someone who shares the descriptor made it non-blocking: wait for the bytes here.
            pollfd descriptor{STDIN_FILENO, POLLIN, 0};
            poll(&descriptor, 1, -1);
        } else if (errno != EINTR) {
            return 0;
        }
    }
}

void PrepareStandardStreams() {
    // Interfaces interrupt an engine to get its attention; a readable pipe is attention enough.
    std::signal(SIGINT, IsInputTyped() ? SIG_DFL : SIG_IGN);
}

void* AllocateTable(size_t bytes) {
    constexpr size_t LARGE_PAGE = size_t{1} << 21;
    if (bytes < LARGE_PAGE) return std::malloc(bytes);
    const size_t whole = (bytes + LARGE_PAGE - 1) / LARGE_PAGE * LARGE_PAGE;
    void* const table = std::aligned_alloc(LARGE_PAGE, whole);
#ifdef MADV_HUGEPAGE
    // A wish: without it the pages are small and the table works as well.
    if (table != nullptr) madvise(table, whole, MADV_HUGEPAGE);
#endif
    return table;
}

void FreeTable(void* table) {
    std::free(table);
}

int64_t FileLength(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    return status.st_size;
}

std::vector<std::string> FindFiles(const std::string& directory, const std::string& suffix) {
    std::vector<std::string> names;
    DIR* stream = opendir(directory.c_str());
    if (stream == nullptr) return names;
    while (const dirent* entry = readdir(stream)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (name.size() >= suffix.size() &&
            strcasecmp(name.c_str() + name.size() - suffix.size(), suffix.c_str()) == 0) {
            names.push_back(name);
        }
    }
    closedir(stream);
    return names;
}

std::string JoinPath(const std::string& directory, const std::string& name) {
    return directory.empty() || directory.ends_with('/') ? directory + name : directory + '/' + name;
}

bool IsDriveReady(const std::string& /*directory*/) {
    return true;
}

std::string ProgramDirectory() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) return "";
    const std::string program(path, static_cast<size_t>(length));
    return program.substr(0, program.rfind('/') + 1);
}

bool SharedFile::Open(const std::string& path, Access access) {
    Close();
    const int mode = access == READ_ONLY ? O_RDONLY : access == READ_WRITE ? O_RDWR : O_RDWR | O_CREAT;
    // Without waiting for somebody at the other end of what turns out to be no file.
    const int descriptor = open(path.c_str(), mode | O_CLOEXEC | O_NONBLOCK, 0666);
    if (descriptor < 0) return false;
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return false;
    }
    handle_ = descriptor;
    isWritable_ = access != READ_ONLY;
    return true;
}

void SharedFile::Close() {
    if (IsOpen()) close(static_cast<int>(handle_));
    handle_ = NONE;
}

int64_t SharedFile::Length() const {
    struct stat status {};
    return fstat(static_cast<int>(handle_), &status) == 0 ? status.st_size : -1;
}

size_t SharedFile::ReadAt(int64_t place, void* bytes, size_t size) const {
    size_t done = 0;
    while (done < size) {
        const ssize_t count = pread(static_cast<int>(handle_), static_cast<char*>(bytes) + done, size - done,
                                    place + static_cast<int64_t>(done));
        if (count > 0) {
            done += static_cast<size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

bool SharedFile::WriteAt(int64_t place, const void* bytes, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t count = pwrite(static_cast<int>(handle_), static_cast<const char*>(bytes) + done,
                                     size - done, place + static_cast<int64_t>(done));
        if (count > 0) {
            done += static_cast<size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool SharedFile::TryLock() {
    return flock(static_cast<int>(handle_), LOCK_EX | LOCK_NB) == 0;
}

void SharedFile::Unlock() {
    flock(static_cast<int>(handle_), LOCK_UN);
}

void* AllocateSharedMemory(size_t bytes) {
    void* const memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

void FreeSharedMemory(void* memory, size_t bytes) {
    if (memory != nullptr) munmap(memory, bytes);
}

// Has the system end this process when its parent is killed, where it can.
static void EndWithParent() {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

bool RunWorkers(int count, const std::function<void(int)>& work, const std::function<void()>& whileWaiting) {
    // Ended children can't be waited for while their signal is ignored.
    std::signal(SIGCHLD, SIG_DFL);
    std::vector<pid_t> workers;
    for (int i = 0; i < count; ++i) {
        const pid_t worker = fork();
        if (worker == 0) {
            EndWithParent();
            try {
                work(i);
            } catch (...) {
                _exit(EXIT_FAILURE);
            }
            // Nothing of the parent's is written or undone here a second time.
            _exit(EXIT_SUCCESS);
        }
        workers.push_back(worker);
    }
    bool areDone = true;
    for (const pid_t worker : workers) {
        int status = 0;
        pid_t ended = -1;
        while (worker > 0) {
            ended = waitpid(worker, &status, WNOHANG);
            if (ended > 0 || (ended < 0 && errno != EINTR)) break;
            whileWaiting();
            poll(nullptr, 0, 5);
        }
        areDone = areDone && worker > 0 && ended == worker && WIFEXITED(status) &&
                  WEXITSTATUS(status) == EXIT_SUCCESS;
    }
    return areDone;
}
