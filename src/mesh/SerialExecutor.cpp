#include "mesh/SerialExecutor.h"

#include <spdlog/spdlog.h>

namespace quillon::mesh {

SerialExecutor::SerialExecutor() : m_thread([this] { run(); }) {}

SerialExecutor::~SerialExecutor() {
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void SerialExecutor::post(std::function<void()> task) {
    {
        std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_changed.notify_all();
}

Executor SerialExecutor::executor() {
    return [this](std::function<void()> task) { post(std::move(task)); };
}

void SerialExecutor::drain() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_tasks.empty() && !m_busy; });
}

void SerialExecutor::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopping || !m_tasks.empty(); });
        if (m_tasks.empty())
            return; // stopping, and everything posted has run
        auto task = std::move(m_tasks.front());
        m_tasks.pop_front();
        m_busy = true;
        lock.unlock();
        try {
            task();
        } catch (const std::exception& failure) {
            spdlog::error("A main-thread task failed: {}", failure.what());
        }
        lock.lock();
        m_busy = false;
        m_changed.notify_all();
    }
}

} // namespace quillon::mesh
