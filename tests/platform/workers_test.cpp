#include "platform/workers.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(WorkersTest, ShareMemoryAndNothingElse) {
    constexpr int COUNT = 5;
    constexpr size_t BYTES = COUNT * sizeof(int);
    int* const shared = static_cast<int*>(AllocateSharedMemory(BYTES));
    ASSERT_NE(shared, nullptr);
    int own = 0;
    const auto work = [&](int worker) {
        ++own;
        shared[worker] = worker + own;
    };
    EXPECT_TRUE(RunWorkers(COUNT, work, [] {}));
    for (int worker = 0; worker < COUNT; ++worker) EXPECT_EQ(shared[worker], worker + 1);
    EXPECT_EQ(own, 0) << "a worker has a state of its own";
    FreeSharedMemory(shared, BYTES);
}

TEST(WorkersTest, AFailureIsTold) {
    const auto fail = [](int worker) {
        if (worker == 1) throw std::runtime_error("on purpose");
    };
    EXPECT_FALSE(RunWorkers(3, fail, [] {}));
    EXPECT_TRUE(RunWorkers(1, fail, [] {}));
}

}  // namespace
