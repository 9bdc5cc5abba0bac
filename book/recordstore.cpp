#include "book/recordstore.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace {

constexpr size_t MOST_RUNS = 64;  // that are merged at a time

auto SortKey(const MoveRecord& record) {
    return std::make_tuple(record.Key1, record.Key2, record.From, record.To);
}

bool ComesBefore(const MoveRecord& a, const MoveRecord& b) {
    return SortKey(a) < SortKey(b);
}

uint32_t AddCounts(uint32_t a, uint32_t b) {
    constexpr uint32_t MOST = std::numeric_limits<uint32_t>::max() / 2;  // so that good and bad have a sum
    return static_cast<uint32_t>(std::min<uint64_t>(uint64_t{a} + b, MOST));
}

// Adds a record to one of the same move.
void Combine(MoveRecord& sum, const MoveRecord& record) {
    sum.Good = AddCounts(sum.Good, record.Good);
    sum.Bad = AddCounts(sum.Bad, record.Bad);
    sum.IsLine |= record.IsLine;
}

// Passes records that come in order on, equal ones as one.
class Combiner {
  public:
    explicit Combiner(const std::function<void(const MoveRecord&)>& visit) : visit_(visit) {}

    void Take(const MoveRecord& record) {
        if (isFull_ && !ComesBefore(sum_, record)) return Combine(sum_, record);
        Finish();
        sum_ = record;
        isFull_ = true;
    }

    void Finish() {
        if (std::exchange(isFull_, false)) visit_(sum_);
    }

  private:
    const std::function<void(const MoveRecord&)>& visit_;
    MoveRecord sum_;
    bool isFull_ = false;
};

// The records of a run, read in pieces.
class RunReader {
  public:
    RunReader(ScratchFile& file, int64_t place, int64_t count, size_t bufferRecords)
        : file_(&file), place_(place), left_(count), bufferRecords_(bufferRecords) {
        Refill();
    }

    bool IsAtEnd() const { return next_ == buffer_.size(); }
    const MoveRecord& Current() const { return buffer_[next_]; }

    void Advance() {
        if (++next_ == buffer_.size()) Refill();
    }

  private:
    void Refill() {
        buffer_.resize(static_cast<size_t>(std::min<int64_t>(left_, static_cast<int64_t>(bufferRecords_))));
        next_ = 0;
        if (buffer_.empty()) return;
        const size_t bytes = buffer_.size() * sizeof(MoveRecord);
        file_->Read(place_, buffer_.data(), bytes);
        place_ += static_cast<int64_t>(bytes);
        left_ -= static_cast<int64_t>(buffer_.size());
    }

    ScratchFile* file_;
    int64_t place_, left_;
    size_t bufferRecords_;
    std::vector<MoveRecord> buffer_;
    size_t next_ = 0;
};

}  // namespace

RecordStore::RecordStore(size_t capacity, std::string scratchPath)
    : capacity_(std::max<size_t>(capacity, 2)), scratchPath_(std::move(scratchPath)) {
    records_.reserve(capacity_);
}

void RecordStore::Add(const MoveRecord& record) {
    if (records_.size() == capacity_) {
        Compact();
        // Openings repeat themselves: most of the room may be free again.
        if (records_.size() > capacity_ / 2) WriteRun();
    }
    records_.push_back(record);
}

void RecordStore::Drain(const std::function<void(const MoveRecord&)>& visit) {
    Compact();
    if (runs_.empty()) {
        for (const MoveRecord& record : records_) visit(record);
    } else {
        WriteRun();
        std::vector<MoveRecord>().swap(records_);
        ReduceRuns();
        MergeRuns(runs_.data(), runs_.size(), visit);
        runs_.clear();
        file_.reset();
    }
    std::vector<MoveRecord>().swap(records_);
}

void RecordStore::Compact() {
    std::sort(records_.begin(), records_.end(), ComesBefore);
    size_t end = 0;
    const std::function<void(const MoveRecord&)> keep = [&](const MoveRecord& record) {
        records_[end++] = record;
    };
    Combiner combiner(keep);
    for (const MoveRecord& record : records_) combiner.Take(record);
    combiner.Finish();
    records_.resize(end);
}

void RecordStore::WriteRun() {
    if (file_ == nullptr) file_ = NewScratchFile();
    runs_.push_back({file_->Length(), static_cast<int64_t>(records_.size())});
    file_->Append(records_.data(), records_.size() * sizeof(MoveRecord));
    records_.clear();
    ++runsWritten_;
}

std::unique_ptr<ScratchFile> RecordStore::NewScratchFile() {
    return std::make_unique<ScratchFile>(scratchPath_ + std::to_string(++filesMade_));
}

void RecordStore::MergeRuns(const Run* runs, size_t count,
                            const std::function<void(const MoveRecord&)>& visit) {
    std::vector<RunReader> readers;
    for (size_t i = 0; i < count; ++i) {
        readers.emplace_back(*file_, runs[i].Place, runs[i].Count,
                             std::max<size_t>(1, capacity_ / (MOST_RUNS + 1)));
    }
    std::vector<RunReader*> heap;
    for (RunReader& reader : readers) {
        if (!reader.IsAtEnd()) heap.push_back(&reader);
    }
    const auto isLater = [](const RunReader* a, const RunReader* b) {
        return ComesBefore(b->Current(), a->Current());
    };
    std::make_heap(heap.begin(), heap.end(), isLater);
    Combiner combiner(visit);
    while (!heap.empty()) {
        std::pop_heap(heap.begin(), heap.end(), isLater);
        RunReader* reader = heap.back();
        combiner.Take(reader->Current());
        reader->Advance();
        if (reader->IsAtEnd()) {
            heap.pop_back();
        } else {
            std::push_heap(heap.begin(), heap.end(), isLater);
        }
    }
    combiner.Finish();
}

// Merges runs into longer ones until few enough are left.
void RecordStore::ReduceRuns() {
    const size_t bufferRecords = std::max<size_t>(1, capacity_ / (MOST_RUNS + 1));
    while (runs_.size() > MOST_RUNS) {
        std::unique_ptr<ScratchFile> longer = NewScratchFile();
        std::vector<Run> longerRuns;
        std::vector<MoveRecord> buffer;
        const auto flush = [&] {
            longer->Append(buffer.data(), buffer.size() * sizeof(MoveRecord));
            buffer.clear();
        };
        for (size_t first = 0; first < runs_.size(); first += MOST_RUNS) {
            Run run{longer->Length(), 0};
            MergeRuns(&runs_[first], std::min(MOST_RUNS, runs_.size() - first),
                      [&](const MoveRecord& record) {
                          buffer.push_back(record);
                          ++run.Count;
                          if (buffer.size() >= bufferRecords) flush();
                      });
            flush();
            longerRuns.push_back(run);
        }
        file_ = std::move(longer);
        runs_ = std::move(longerRuns);
    }
}
