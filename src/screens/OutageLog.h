#pragma once

#include <mutex>
#include <string>

namespace quillon::screens {

/// Says an outlet's trouble once per outage, not once per announcement: the first failure is
/// logged as a warning, repeats only at debug level, and the first success after it says the
/// program answers again. Safe from any thread.
class OutageLog {
public:
    /// `subject` begins each line ("OpenLP", "BibleSync").
    explicit OutageLog(std::string subject) : m_subject(std::move(subject)) {}

    void failed(const std::string& reason);
    void succeeded();
    bool down() const;

private:
    std::string m_subject;
    mutable std::mutex m_mutex;
    bool m_down = false;
};

} // namespace quillon::screens
