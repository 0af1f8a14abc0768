#pragma once

#include <string>

namespace quillon::testing {

/// Puts the calling thread, and the threads it starts, in a network namespace of its own with
/// only a loopback interface, and removes the namespace on destruction. Multicast sent inside
/// never leaves it. Needs root; `available()` is false (with `why()`) where namespaces cannot be made.
class PrivateNetwork {
public:
    PrivateNetwork();
    ~PrivateNetwork();
    PrivateNetwork(const PrivateNetwork&) = delete;
    PrivateNetwork& operator=(const PrivateNetwork&) = delete;

    bool available() const { return m_entered; }
    const std::string& why() const { return m_why; }

private:
    std::string m_name;
    std::string m_why;
    int m_original = -1;
    bool m_created = false;
    bool m_entered = false;
};

} // namespace quillon::testing
