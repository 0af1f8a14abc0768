#pragma once

#include "orvane/SuitePairing.h"

#include <optional>
#include <string>
#include <vector>

namespace quillon::platform {
class Preferences;
class SecretStore;
} // namespace quillon::platform

namespace quillon::mesh {

/// The desk's pairings: one secret item per peer name holding {"capabilities", "secret" (base64),
/// "establishedAt" (seconds since 2001-01-01)}, and the names listed in
/// "Quillon.suiteMesh.pairedPeerNames". Failures are logged and reported as false or nothing.
class SuiteMeshPairingStore {
public:
    SuiteMeshPairingStore(platform::SecretStore& secrets, platform::Preferences& preferences);

    /// The secret service name: the application's identifier followed by ".suite-mesh-pairing".
    static std::string serviceName();
    /// The account under which Calvane's link code is kept.
    static constexpr const char* calvaneCodeAccount = "Calvane.code";

    std::optional<orvane::SuitePairing> pairing(const std::string& peerName) const;
    bool save(const orvane::SuitePairing& pairing);
    /// False when no pairing with that name exists or it could not be removed.
    bool remove(const std::string& peerName);
    std::vector<std::string> pairedPeerNames() const;
    std::optional<std::string> calvaneCode() const;

private:
    platform::SecretStore& m_secrets;
    platform::Preferences& m_preferences;
};

} // namespace quillon::mesh
