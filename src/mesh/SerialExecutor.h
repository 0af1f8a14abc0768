#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quillon::mesh {

/// Where the bridge delivers everything meant for the application's main thread.
using Executor = std::function<void(std::function<void()>)>;

/// A thread that runs posted tasks one at a time in order: the "main thread" for programs without
/// an interface toolkit (the command line, tests).
class SerialExecutor {
public:
    SerialExecutor();
    ~SerialExecutor();
    SerialExecutor(const SerialExecutor&) = delete;
    SerialExecutor& operator=(const SerialExecutor&) = delete;

    void post(std::function<void()> task);
    Executor executor();
    /// Waits until every task posted before the call has run.
    void drain();

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_tasks;
    bool m_stopping = false;
    bool m_busy = false;
    std::thread m_thread;
};

} // namespace quillon::mesh
