#include "egtb/tablework.h"

#include <cstring>

#include "egtb/newfile.h"
#include "egtb/tableclass.h"
#include "platform/sharedfile.h"

namespace {

// The beginning of the file. The entries follow, then the checksum of all before.
struct WorkHeader {
    char Magic[24] = "Kestrovan table at work";
    char Name[MAX_TABLE_MEN + 2] = {};
    WorkState State;
    int32_t HalfCount = 0;
    int64_t Sizes[2] = {};  // entries

    WorkHeader(const std::string& className, const std::vector<WorkEntries>& halves)
        : HalfCount(static_cast<int32_t>(halves.size())) {
        className.copy(Name, sizeof Name - 1);
        for (size_t i = 0; i < halves.size(); ++i) Sizes[i] = static_cast<int64_t>(halves[i].Codes.size());
    }
};
static_assert(sizeof(WorkHeader) == 64);  // nothing between its fields, so that it can be compared

// FNV-1a over words of eight bytes.
class Checksum {
  public:
    void Add(const void* bytes, size_t count) {
        const auto* next = static_cast<const unsigned char*>(bytes);
        for (uint64_t word; count >= sizeof word; count -= sizeof word, next += sizeof word) {
            std::memcpy(&word, next, sizeof word);
            AddWord(word);
        }
        for (; count > 0; --count) AddWord(*next++);
    }
    uint64_t Sum() const { return sum_; }

  private:
    void AddWord(uint64_t word) { sum_ = (sum_ ^ word) * 0x100000001B3u; }

    uint64_t sum_ = 0xCBF29CE484222325u;
};

}  // namespace

void SaveWork(const std::string& path, const std::string& className, const WorkState& state,
              const std::vector<WorkEntries>& halves) {
    NewFile file(path);
    Checksum checksum;
    const auto write = [&](const void* bytes, size_t count) {
        checksum.Add(bytes, count);
        file.Write(bytes, count);
    };
    WorkHeader header(className, halves);
    header.State = state;
    write(&header, sizeof header);
    for (const WorkEntries& half : halves) {
        write(half.Codes.data(), half.Codes.size_bytes());
        write(half.MovesLeft.data(), half.MovesLeft.size_bytes());
    }
    const uint64_t sum = checksum.Sum();
    file.Write(&sum, sizeof sum);
    file.Complete();
}

bool LoadWork(const std::string& path, const std::string& className, WorkState* state,
              const std::vector<WorkEntries>& halves) {
    SharedFile file;
    if (!file.Open(path, SharedFile::READ_ONLY)) return false;
    Checksum checksum;
    int64_t place = 0;
    const auto read = [&](void* bytes, size_t count) {
        if (file.ReadAt(place, bytes, count) != count) return false;
        place += static_cast<int64_t>(count);
        checksum.Add(bytes, count);
        return true;
    };
    // But for the state it is the header that would be written now.
    WorkHeader expected(className, halves), header = expected;
    if (!read(&header, sizeof header)) return false;
    expected.State = header.State;
    if (std::memcmp(&header, &expected, sizeof header) != 0) return false;
    for (const WorkEntries& half : halves) {
        if (!read(half.Codes.data(), half.Codes.size_bytes())) return false;
        if (!read(half.MovesLeft.data(), half.MovesLeft.size_bytes())) return false;
    }
    uint64_t sum = 0;
    if (file.ReadAt(place, &sum, sizeof sum) != sizeof sum || sum != checksum.Sum()) return false;
    *state = header.State;
    return true;
}
