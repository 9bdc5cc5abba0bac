#include "book/learnfile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "book/littleendian.h"
#include "core/board.h"
#include "platform/output.h"

SharedFile LearningFile;

namespace {

constexpr char FILE_NAME[] = "Learn.kv1";
constexpr char TITLE[] = "Kestrovan learning file";
constexpr int64_t TITLE_BYTES = 23, BUCKETS = 65536, PLACE_BYTES = 4;
constexpr int64_t RECORDS_START = TITLE_BYTES + BUCKETS * PLACE_BYTES;
constexpr int64_t RECORD_BYTES = 24, LINK_PLACE = 20;  // the link is a record's last field
constexpr int64_t LARGEST_PLACE = UINT32_MAX;
constexpr int CHAIN_LIMIT = 4096;  // records; far beyond any chain that games make

using RecordBytes = std::array<uint8_t, RECORD_BYTES>;

uint32_t BucketOf(LearnedKey key) {
    return key.Key1 & 0xFFFF;
}

RecordBytes PackRecord(const LearnedRecord& record) {
    RecordBytes bytes{};
    PutWord(&bytes[0], static_cast<uint32_t>(record.Depth));
    PutWord(&bytes[4], static_cast<uint32_t>(record.Score));
    PutWord(&bytes[8], record.Move);
    PutWord(&bytes[12], record.Key.Key1);
    PutWord(&bytes[16], record.Key.Key2);
    return bytes;
}

LearnedRecord UnpackRecord(const RecordBytes& bytes) {
    return {static_cast<int>(GetWord(&bytes[0])),
            static_cast<int>(GetWord(&bytes[4])),
            GetWord(&bytes[8]),
            {GetWord(&bytes[12]), GetWord(&bytes[16])}};
}

// A walk along the chain of a bucket. It ends at the first link that leads to no record of the bucket further
// on in the file.
class Chain {
  public:
    explicit Chain(LearnedKey key) : bucket_(BucketOf(key)), link_(TITLE_BYTES + bucket_ * PLACE_BYTES) {}

    // Goes to the next record; false at the end.
    bool Advance() {
        std::array<uint8_t, PLACE_BYTES> link{};
        if (++steps_ > CHAIN_LIMIT || !ReadAll(link_, link)) return false;
        const int64_t next = GetWord(link.data());
        const bool isPlace =
            next > place_ && next >= RECORDS_START && (next - RECORDS_START) % RECORD_BYTES == 0;
        RecordBytes bytes;
        if (!isPlace || !ReadAll(next, bytes)) return false;
        record_ = UnpackRecord(bytes);
        if (BucketOf(record_.Key) != bucket_) return false;
        place_ = next;
        link_ = next + LINK_PLACE;
        return true;
    }

    const LearnedRecord& Record() const { return record_; }
    int64_t Place() const { return place_; }  // of the record
    int64_t Link() const { return link_; }    // place of the link behind the record, or of the bucket
    bool IsTooLong() const { return steps_ > CHAIN_LIMIT; }

  private:
    template <size_t size>
    static bool ReadAll(int64_t place, std::array<uint8_t, size>& bytes) {
        return LearningFile.ReadAt(place, bytes.data(), size) == size;
    }

    const uint32_t bucket_;
    int64_t link_;
    int64_t place_ = 0;
    int steps_ = 0;
    LearnedRecord record_;
};

std::vector<uint8_t> EmptyFile() {
    std::vector<uint8_t> bytes(RECORDS_START);
    std::copy_n(TITLE, TITLE_BYTES, bytes.begin());
    return bytes;
}

// Whether the open file begins as a learning file does.
bool HasTitle() {
    std::array<char, TITLE_BYTES> title{};
    LearningFile.ReadAt(0, title.data(), title.size());
    return std::equal(title.begin(), title.end(), TITLE);
}

// Completes a file that is new, or whose maker was stopped while he made it. False for any other that is too
// short.
bool CompleteFile() {
    const FileLock lock(LearningFile);
    if (LearningFile.Length() >= RECORDS_START) return true;
    std::vector<uint8_t> bytes(RECORDS_START);
    const std::vector<uint8_t> empty = EmptyFile();
    const auto length = static_cast<int64_t>(LearningFile.ReadAt(0, bytes.data(), bytes.size()));
    return lock.IsHeld() && std::equal(bytes.begin(), bytes.begin() + length, empty.begin()) &&
           LearningFile.WriteAt(0, empty.data(), empty.size());
}

}  // namespace

LearnedKey CurrentLearnedKey() {
    return {static_cast<uint32_t>(board.HashKey), static_cast<uint32_t>(board.HashKey >> 16)};
}

void OpenLearningFile() {
    LearningFile.Open(FILE_NAME, SharedFile::READ_WRITE_OR_CREATE);
    const bool isWhole = LearningFile.IsOpen() && (LearningFile.Length() >= RECORDS_START || CompleteFile());
    if (isWhole && HasTitle()) return;
    Print("Error opening \"%s\"!\n", FILE_NAME);
    FlushOutput();
    CloseLearningFile();
}

void CloseLearningFile() {
    LearningFile.Close();
}

bool FindLearned(LearnedKey key, LearnedRecord* record, uint32_t* place) {
    if (!LearningFile.IsOpen()) return false;
    for (Chain chain(key); chain.Advance();) {
        if (chain.Record().Key != key) continue;
        *record = chain.Record();
        *place = static_cast<uint32_t>(chain.Place());
        return true;
    }
    return false;
}

bool AddLearned(const LearnedRecord& record) {
    if (!LearningFile.IsOpen()) return false;
    Chain chain(record.Key);
    while (chain.Advance()) {
    }
    // Behind the torn end of a damaged file records stay in step.
    const int64_t length = std::max(LearningFile.Length(), RECORDS_START);
    const int64_t count = (length - RECORDS_START + RECORD_BYTES - 1) / RECORD_BYTES;
    const int64_t place = RECORDS_START + count * RECORD_BYTES;
    if (chain.IsTooLong() || place > LARGEST_PLACE) return false;
    // The record first: a link without its record would be damage, a record without its link is only lost.
    const RecordBytes bytes = PackRecord(record);
    std::array<uint8_t, PLACE_BYTES> link{};
    PutWord(link.data(), static_cast<uint32_t>(place));
    return LearningFile.WriteAt(place, bytes.data(), bytes.size()) &&
           LearningFile.WriteAt(chain.Link(), link.data(), link.size());
}

bool RefreshLearned(const LearnedRecord& record, uint32_t place) {
    const RecordBytes bytes = PackRecord(record);
    return LearningFile.IsOpen() && LearningFile.WriteAt(place, bytes.data(), LINK_PLACE);
}
