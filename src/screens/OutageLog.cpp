#include "screens/OutageLog.h"

#include <spdlog/spdlog.h>

namespace quillon::screens {

void OutageLog::failed(const std::string& reason) {
    std::lock_guard lock(m_mutex);
    if (m_down) {
        spdlog::debug("{}: {}", m_subject, reason);
        return;
    }
    m_down = true;
    spdlog::warn("{}: {}", m_subject, reason);
}

void OutageLog::succeeded() {
    std::lock_guard lock(m_mutex);
    if (!m_down)
        return;
    m_down = false;
    spdlog::info("{} answers again", m_subject);
}

bool OutageLog::down() const {
    std::lock_guard lock(m_mutex);
    return m_down;
}

} // namespace quillon::screens
