#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/eval/evaltest.h"

static size_t Allocations = 0;  // of the whole test program, by way of new

// Never inlined: seen side by side, a new and a free look mismatched to the compiler.

[[gnu::noinline]] void* operator new(size_t bytes) {
    ++Allocations;
    void* memory = std::malloc(bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}

namespace {

using AllocationTest = EvalTest;

TEST_F(AllocationTest, EvaluateTakesNothingFromTheHeap) {
    UsePawnHash(1);
    size_t taken = 0;
    VisitRandomBoards(1'000, 5, [&] {
        const size_t before = Allocations;
        Evaluation();
        taken += Allocations - before;
    });
    EXPECT_EQ(taken, 0u);
    EXPECT_GT(Allocations, 0u) << "the count works";
}

}  // namespace
