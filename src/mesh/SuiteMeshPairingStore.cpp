#include "mesh/SuiteMeshPairingStore.h"

#include "mesh/SermonStudioMessage.h"
#include "platform/ApplicationIdentity.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"

#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

#include <algorithm>

namespace quillon::mesh {

namespace {
constexpr const char* pairedNamesKey = "Quillon.suiteMesh.pairedPeerNames";

/// A running desk holds its preferences for hours: read them again before a change, so that what
/// another Quillon paired, unpaired or changed meanwhile is not written back over.
void refresh(platform::Preferences& preferences) {
    if (!preferences.file().empty()) // preferences kept in memory only have nothing newer to read
        preferences.reload();
}
} // namespace

SuiteMeshPairingStore::SuiteMeshPairingStore(platform::SecretStore& secrets, platform::Preferences& preferences)
    : m_secrets(secrets), m_preferences(preferences) {}

std::string SuiteMeshPairingStore::serviceName() {
    return std::string(platform::applicationIdentifier) + ".suite-mesh-pairing";
}

std::optional<orvane::SuitePairing> SuiteMeshPairingStore::pairing(const std::string& peerName) const {
    auto stored = m_secrets.read(peerName);
    if (!stored)
        return std::nullopt;
    auto record = nlohmann::json::parse(*stored, nullptr, false);
    try {
        if (record.is_discarded() || !record.is_object())
            throw std::runtime_error("not a JSON object");
        auto secret = orvane::base64Decode(record.at("secret").get<std::string>());
        if (!secret || secret->size() != 32)
            throw std::runtime_error("the secret is not 32 bytes of base64");
        return orvane::SuitePairing{peerName, orvane::SuiteCapability{record.at("capabilities").get<std::uint64_t>()},
                                    *secret, fromSecondsSinceReferenceDate(record.at("establishedAt").get<double>())};
    } catch (const std::exception& failure) {
        spdlog::error("The stored pairing for {} cannot be read: {}", peerName, failure.what());
        return std::nullopt;
    }
}

bool SuiteMeshPairingStore::save(const orvane::SuitePairing& pairing) {
    nlohmann::json record = {{"capabilities", pairing.capabilities.rawValue},
                             {"secret", orvane::base64Encode(pairing.secret)},
                             {"establishedAt", secondsSinceReferenceDate(pairing.establishedAt)}};
    if (!m_secrets.write(pairing.peerIdentifier, record.dump()))
        return false;
    refresh(m_preferences);
    auto names = pairedPeerNames();
    if (std::find(names.begin(), names.end(), pairing.peerIdentifier) == names.end()) {
        names.push_back(pairing.peerIdentifier);
        m_preferences.set(pairedNamesKey, names);
    }
    return true;
}

bool SuiteMeshPairingStore::remove(const std::string& peerName) {
    refresh(m_preferences);
    auto names = pairedPeerNames();
    bool listed = std::erase(names, peerName) > 0;
    bool stored = m_secrets.read(peerName).has_value();
    if (!listed && !stored)
        return false;
    if (stored && !m_secrets.remove(peerName))
        return false;
    m_preferences.set(pairedNamesKey, names);
    return true;
}

std::vector<std::string> SuiteMeshPairingStore::pairedPeerNames() const {
    return m_preferences.stringList(pairedNamesKey);
}

std::optional<std::string> SuiteMeshPairingStore::calvaneCode() const {
    return m_secrets.read(calvaneCodeAccount);
}

} // namespace quillon::mesh
