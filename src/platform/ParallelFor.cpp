#include "platform/ParallelFor.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace quillon::platform {

void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> stopped{false};
    std::mutex failureLock;
    std::size_t failedIndex = count;
    std::exception_ptr failure;

    auto work = [&] {
        while (!stopped.load(std::memory_order_relaxed)) {
            const std::size_t index = next.fetch_add(1, std::memory_order_relaxed);
            if (index >= count)
                return;
            try {
                body(index);
            } catch (...) {
                std::lock_guard lock(failureLock);
                if (index < failedIndex) {
                    failedIndex = index;
                    failure = std::current_exception();
                }
                stopped = true;
            }
        }
    };

    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t helpers = std::min<std::size_t>(std::min(cores, parallelForThreadLimit) - 1, count / 2);
    std::vector<std::thread> threads;
    threads.reserve(helpers);
    for (std::size_t started = 0; started < helpers; ++started) {
        try {
            threads.emplace_back(work);
        } catch (const std::system_error&) {
            break; // out of threads: the ones already running and this one finish the work
        }
    }
    work();
    for (auto& thread : threads)
        thread.join();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace quillon::platform
