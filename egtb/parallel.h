#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

// Calls work(begin, end) for the parts of 0..count in several threads, in no certain order, and waits for
// all. The first exception of a part is thrown again here, and the parts that have not begun are left out.
template <typename Work>
void ForAllParts(int64_t count, int threads, Work work) {
    constexpr int64_t PART = 1 << 14;
    std::atomic<int64_t> next = 0;
    std::exception_ptr failure;
    std::mutex failureLock;
    const auto run = [&] {
        try {
            for (int64_t begin; (begin = next.fetch_add(PART)) < count;) {
                work(begin, std::min(begin + PART, count));
            }
        } catch (...) {
            const std::lock_guard lock(failureLock);
            if (!failure) failure = std::current_exception();
            next = count;
        }
    };
    std::vector<std::thread> helpers;
    helpers.reserve(static_cast<size_t>(threads));
    try {
        for (int i = 1; i < threads; ++i) helpers.emplace_back(run);
    } catch (...) {
        // The threads that could be had must do.
    }
    run();
    for (std::thread& helper : helpers) helper.join();
    if (failure) std::rethrow_exception(failure);
}
