#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace quillon::mesh {

/// DNS-SD through the Avahi daemon: publishes the desk's two Vantalink services under one name and
/// browses for Calvane. Without a reachable daemon it logs once that discovery is off and does
/// nothing else; the listeners keep working on their ports.
class ServiceDiscovery {
public:
    /// Called on Avahi's own thread with a resolved Calvane bridge.
    using Found = std::function<void(const std::string& host, std::uint16_t port)>;

    static constexpr const char* plainService = "_vantalink._tcp";
    static constexpr const char* secureService = "_vantalink-tls._tcp";
    static constexpr const char* calvaneService = "_calvane-vrn._tcp";

    explicit ServiceDiscovery(std::string serviceName);
    ~ServiceDiscovery();
    ServiceDiscovery(const ServiceDiscovery&) = delete;
    ServiceDiscovery& operator=(const ServiceDiscovery&) = delete;

    /// False when discovery is off (no daemon); the reason is logged once per process.
    bool start(std::uint16_t plainPort, std::uint16_t securePort, Found calvaneFound);
    void stop();

    struct State;

private:
    std::unique_ptr<State> m_state;
};

} // namespace quillon::mesh
