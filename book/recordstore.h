#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "book/scratchfile.h"

// What games say about one move of one position.
struct MoveRecord {
    int32_t Key1 = 0, Key2 = 0;  // the position's book key, signed as books sort it
    uint8_t From = 0, To = 0;
    uint8_t IsLine = 0;  // 1: a line of openings has the move
    uint8_t Unused = 0;
    uint32_t Good = 0, Bad = 0;  // two per game, from the mover's view; no games: 0, 0

    uint32_t Games() const { return (Good + Bad) / 2; }
    bool IsSamePosition(const MoveRecord& other) const { return Key1 == other.Key1 && Key2 == other.Key2; }
};

// Any number of records in bounded memory: what overflows is sorted and written to a scratch file as a run,
// and the runs are merged at the end. Failures throw a BookError.
class RecordStore {
  public:
    // Room for `capacity` records, at least 2; scratch files get names that begin with `scratchPath`.
    RecordStore(size_t capacity, std::string scratchPath);

    void Add(const MoveRecord& record);

    // Calls `visit` for each move of each position in ascending order of keys and squares, equal ones added
    // up, and leaves the store empty.
    void Drain(const std::function<void(const MoveRecord&)>& visit);

    int RunsWritten() const { return runsWritten_; }

  private:
    struct Run {
        int64_t Place;  // bytes
        int64_t Count;  // records
    };

    void Compact();
    void WriteRun();
    void MergeRuns(const Run* runs, size_t count, const std::function<void(const MoveRecord&)>& visit);
    void ReduceRuns();
    std::unique_ptr<ScratchFile> NewScratchFile();

    size_t capacity_;
    std::string scratchPath_;
    std::vector<MoveRecord> records_;
    std::unique_ptr<ScratchFile> file_;
    std::vector<Run> runs_;
    int filesMade_ = 0, runsWritten_ = 0;
};
