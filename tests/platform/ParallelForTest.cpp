#include "platform/ParallelFor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quillon::platform {
namespace {

TEST(ParallelFor, runsEveryIndexExactlyOnce) {
    for (std::size_t count : {0u, 1u, 2u, 3u, 1000u}) {
        std::vector<std::atomic<int>> runs(count);
        parallelFor(count, [&](std::size_t index) { ++runs[index]; });
        for (std::size_t index = 0; index < count; ++index)
            EXPECT_EQ(runs[index].load(), 1) << index << " of " << count;
    }
}

TEST(ParallelFor, rethrowsTheLowestFailingIndexAfterAllThreadsStopped) {
    std::atomic<int> running{0};
    try {
        parallelFor(500, [&](std::size_t index) {
            ++running;
            if (index % 7 == 3)
                throw std::runtime_error("failed at " + std::to_string(index));
            --running;
        });
        FAIL() << "no exception";
    } catch (const std::runtime_error& failure) {
        // Indexes are handed out in order, so every lower index had run when 3 failed.
        EXPECT_STREQ(failure.what(), "failed at 3");
    }
    // Each failing body left its count behind; no body was still running when the call returned.
    const int failed = running.load();
    EXPECT_GE(failed, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(running.load(), failed);
}

} // namespace
} // namespace quillon::platform
