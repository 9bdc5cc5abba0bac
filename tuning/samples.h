#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "core/board.h"
#include "platform/workers.h"

// The positions that weights are fitted to, in memory that all workers see.

// An array of zeros in shared memory; throws std::bad_alloc without it. Types that are no more than their
// bytes only.
template <typename Type>
class SharedArray {
  public:
    explicit SharedArray(size_t length)
        : length_(length), data_(static_cast<Type*>(AllocateSharedMemory(Bytes()))) {
        if (data_ == nullptr) throw std::bad_alloc();
    }
    ~SharedArray() { FreeSharedMemory(data_, Bytes()); }
    SharedArray(const SharedArray&) = delete;
    SharedArray& operator=(const SharedArray&) = delete;

    Type& operator[](size_t i) const { return data_[i]; }
    Type* begin() const { return data_; }
    Type* end() const { return data_ + length_; }
    size_t size() const { return length_; }

  private:
    // A map of nothing can't be had.
    size_t Bytes() const { return std::max<size_t>(1, length_ * sizeof(Type)); }

    size_t length_;
    Type* data_;
};

struct Sample {
    Board Position;
    float Result;     // White's points, 0..1: those of the game, or what a search thought of them
    int Source;       // the place of its file
    bool IsHeldBack;  // judges the weights, and doesn't shape them
    bool IsUsed;      // quiet and not decided; the others count for nothing
};

using SampleSet = SharedArray<Sample>;

// How the work is divided, and who is told how far it is.
struct Labour {
    int Workers = 1;
    // Called now and then with what is being done and the share of it that is done, 0..1.
    std::function<void(const char* what, double done)> Tell = [](const char*, double) {};
};

// Does work(worker, begin, end, done) on the parts of 0..count in worker processes; a worker adds to *done
// what it has finished of its part's count. Throws std::runtime_error when a worker fails.
void ShareWork(const Labour& labour, const char* what, size_t count,
               const std::function<void(int worker, size_t begin, size_t end, int64_t* done)>& work);

// What became of the lines that were read.
struct ReadingReport {
    int64_t Lines = 0, WithoutResult = 0;
    int64_t Impossible = 0, Unquiet = 0, Decided = 0;  // of those that were taken
};

// What is taken of the positions in files.
struct Choice {
    int64_t Limit = INT64_MAX;  // positions, spread evenly over all
    // Percent; chosen by the text alone, so that it is the same in every run. Positions of one game know too
    // much of each other to be parted: those with an equal "id" go together.
    int HeldBack = 10;
    // Centipawns: a position that stands higher for either side is decided. Whether a rook more is worth six
    // pawns or sixteen shows in no result, and a scale that suits the quiet middle must not pay for it.
    int Decided = 400;
    // Share of what the score of a search, where the line has one, says in the result, 0..1. A game has one
    // result for all its positions, and a good search knows better what each of them is worth.
    double Scores = 0;
};

// Whether a line is among the percent that judge.
bool IsHeldBack(std::string_view line, int percent);

// Reads labelled positions and makes them quiet by the weights in force, which say what is decided, too.
// Throws std::runtime_error when a file can't be read.
std::unique_ptr<SampleSet> ReadSamples(const std::vector<std::string>& paths, const Choice& choice,
                                       const Labour& labour, ReadingReport& report);

// The evaluation of a sample by the weights in force, in centipawns from White's view.
int EvaluateSample(const Sample& sample);
