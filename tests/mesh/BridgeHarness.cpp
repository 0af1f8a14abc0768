#include "BridgeHarness.h"

#include "mesh/VantalinkPsk.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <thread>

namespace quillon::testing {

using namespace std::chrono_literals;

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition())
            return true;
        std::this_thread::sleep_for(10ms);
    }
    return condition();
}

long residentBytes() {
    long pages = 0, resident = 0;
    if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    return resident * sysconf(_SC_PAGESIZE);
}

mesh::MeshSettings BridgeHarness::quietSettings() {
    mesh::MeshSettings settings;
    settings.discovery = false;
    return settings;
}

BridgeHarness::BridgeHarness(mesh::MeshSettings settings, bool useFakeClock)
    : secrets(mesh::SuiteMeshPairingStore::serviceName(), folder / "secrets" / "pairings.json",
              platform::SecretStore::Backend::fileOnly) {
    const platform::Clock& clock =
        useFakeClock ? static_cast<const platform::Clock&>(fakeClock) : platform::SystemClock::shared();
    bridge = std::make_unique<mesh::ScriptureBridge>(settings, pairings, mainThread.executor(), clock);
    bridge->onEvent = [this](const mesh::MeshEvent& event) {
        std::lock_guard lock(mutex);
        events.push_back(event);
        changed.notify_all();
    };
    bridge->onNextVerse = [this] {
        std::lock_guard lock(mutex);
        ++nextVerses;
        changed.notify_all();
    };
    bridge->onPreviousVerse = [this] {
        std::lock_guard lock(mutex);
        ++previousVerses;
        changed.notify_all();
    };
    bridge->start();
}

BridgeHarness::~BridgeHarness() {
    bridge->stop();
    mainThread.drain();
    bridge.reset();
}

std::optional<mesh::MeshEvent> BridgeHarness::waitForEvent(mesh::MeshEvent::Kind kind,
                                                           std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex);
    std::optional<mesh::MeshEvent> found;
    changed.wait_for(lock, timeout, [&] {
        for (const auto& event : events)
            if (event.kind == kind) {
                found = event;
                return true;
            }
        return false;
    });
    return found;
}

orvane::Bytes BridgeHarness::pair(const std::string& name) {
    auto peer = VantalinkTestPeer::connectPlain(bridge->plainPort());
    peer->hello(name);
    auto code = bridge->startBootstrap(name);
    auto challenge = peer->waitFor(mesh::SermonStudioMessageType::pairChallenge);
    EXPECT_TRUE(challenge);
    if (!challenge)
        return {};
    peer->answerBootstrap(*challenge, code.code, name);
    EXPECT_TRUE(peer->waitFor(mesh::SermonStudioMessageType::pairAccepted));
    auto pairing = pairings.pairing(name);
    EXPECT_TRUE(pairing);
    return pairing ? pairing->secret : orvane::Bytes{};
}

std::unique_ptr<VantalinkTestPeer> BridgeHarness::connectPaired(const orvane::Bytes& secret) {
    return VantalinkTestPeer::connectSecure(bridge->securePort(), mesh::VantalinkPsk::identity(secret),
                                            mesh::VantalinkPsk::key(secret));
}

} // namespace quillon::testing
