#pragma once

#include <mutex>
#include <optional>
#include <string>

namespace quillon::mesh {

/// Who a connection says it is, and whether it has proved its pairing. Carries its own lock because
/// the bridge's thread writes it and the interface reads it.
class LinkClaim {
public:
    std::optional<std::string> name() const {
        std::lock_guard lock(m_mutex);
        return m_name;
    }
    bool verified() const {
        std::lock_guard lock(m_mutex);
        return m_verified;
    }
    void claim(std::string name) {
        std::lock_guard lock(m_mutex);
        // A new name undoes an earlier proof: it was made for the other name.
        if (m_name != name)
            m_verified = false;
        m_name = std::move(name);
    }
    void markVerified(std::string name) {
        std::lock_guard lock(m_mutex);
        m_name = std::move(name);
        m_verified = true;
    }

private:
    mutable std::mutex m_mutex;
    std::optional<std::string> m_name;
    bool m_verified = false;
};

} // namespace quillon::mesh
