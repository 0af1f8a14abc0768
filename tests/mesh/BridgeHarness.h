#pragma once

#include "VantalinkTestPeer.h"
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "support/FakeClock.h"
#include "support/TemporaryFolder.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace quillon::testing {

/// Polls `condition` every 10 ms until it holds or `timeout` passes; returns its last value.
bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds timeout = std::chrono::seconds{5});
/// This process's resident memory in bytes, 0 when /proc cannot be read.
long residentBytes();

/// A bridge on loopback with its own secrets file, in-memory preferences, a main-thread executor and
/// an event recorder. Discovery is off; heartbeats are slow unless a test shortens them.
struct BridgeHarness {
    explicit BridgeHarness(mesh::MeshSettings settings = quietSettings(), bool useFakeClock = false);
    ~BridgeHarness();

    static mesh::MeshSettings quietSettings();

    /// Waits until an event of `kind` arrived (earlier ones count) and returns it.
    std::optional<mesh::MeshEvent> waitForEvent(mesh::MeshEvent::Kind kind,
                                                std::chrono::milliseconds timeout = std::chrono::seconds{5});
    /// Pairs `name` over a fresh plain connection and returns the pairing secret.
    orvane::Bytes pair(const std::string& name);
    std::unique_ptr<VantalinkTestPeer> connectPaired(const orvane::Bytes& secret);

    TemporaryFolder folder;
    platform::Preferences preferences = platform::Preferences::inMemory();
    platform::SecretStore secrets;
    mesh::SuiteMeshPairingStore pairings{secrets, preferences};
    FakeClock fakeClock;
    mesh::SerialExecutor mainThread;
    std::unique_ptr<mesh::ScriptureBridge> bridge;

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<mesh::MeshEvent> events;
    int nextVerses = 0;
    int previousVerses = 0;
};

} // namespace quillon::testing
