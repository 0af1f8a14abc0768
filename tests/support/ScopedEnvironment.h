#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillon::testing {

/// Sets an environment variable for the lifetime of the object and restores the old value, so a
/// test can point the XDG folders at a temporary folder.
class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::string& value) : m_name(std::move(name)) {
        if (const char* old = std::getenv(m_name.c_str()))
            m_previous = old;
        ::setenv(m_name.c_str(), value.c_str(), 1);
    }
    ~ScopedEnvironment() {
        if (m_previous)
            ::setenv(m_name.c_str(), m_previous->c_str(), 1);
        else
            ::unsetenv(m_name.c_str());
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_previous;
};

} // namespace quillon::testing
