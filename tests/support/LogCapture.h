#pragma once

#include <spdlog/logger.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon::testing {

/// Replaces spdlog's default logger while alive and keeps every line as "<level>: <message>".
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const;
    /// True when some line contains `text`.
    bool contains(const std::string& text) const;

private:
    std::shared_ptr<spdlog::logger> m_previous;
    std::shared_ptr<void> m_sink;
};

} // namespace quillon::testing
