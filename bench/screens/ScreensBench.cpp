// From the bridge's announce to each screen beyond the mesh: OpenLP's first request arriving at
// a listener where OpenLP would be, BibleSync's navigation packet arriving at a program on the
// same (private) network, the live page's event reaching a connected page, and that page in
// headless Chromium showing the passage.
#include "HeadlessBrowser.h"
#include "LoopbackHttp.h"
#include "PrivateNetwork.h"
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/ScreenOutlets.h"

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <poll.h>
#include <spdlog/spdlog.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace quillon;
using Clock = std::chrono::steady_clock;

/// A bridge without discovery and the outlets `preferences` switch on, hung on it.
struct Desk {
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("quillon-screens-bench-" + std::to_string(getpid()));
    platform::Preferences preferences = platform::Preferences::inMemory();
    platform::SecretStore secrets{"bench", folder / "secrets.json", platform::SecretStore::Backend::fileOnly};
    mesh::SuiteMeshPairingStore pairings{secrets, preferences};
    mesh::SerialExecutor mainThread;
    std::unique_ptr<mesh::ScriptureBridge> bridge;
    std::shared_ptr<screens::OutletHub> outlets;

    void start(const screens::ScreenOutletChoices& choices) {
        mesh::MeshSettings settings;
        settings.discovery = false;
        bridge = std::make_unique<mesh::ScriptureBridge>(settings, pairings, mainThread.executor());
        outlets = screens::attachScreenOutlets(*bridge, preferences, choices, &secrets);
        bridge->start();
    }
    ~Desk() {
        outlets.reset();
        if (bridge)
            bridge->stop();
        mainThread.drain();
        bridge.reset();
        std::filesystem::remove_all(folder);
    }
};

mesh::LiveScripture passage(int verse) {
    return {"Psalms 119:" + std::to_string(verse), "Psalms", "KJV", "Thy word is a lamp unto my feet"};
}

void report(benchmark::State& state, std::vector<double>& microseconds) {
    if (microseconds.empty())
        return;
    std::sort(microseconds.begin(), microseconds.end());
    state.counters["p50_us"] = microseconds[microseconds.size() / 2];
    state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
    state.counters["max_us"] = microseconds.back();
}

/// True once `fd` has bytes, within `limit`.
bool readable(int fd, std::chrono::milliseconds limit) {
    pollfd entry{fd, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(limit.count())) == 1;
}

void BM_AnnounceToOpenLpRequest(benchmark::State& state) {
    spdlog::set_level(spdlog::level::off); // every exchange is cut short on purpose
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::listen(listener, 16);
    socklen_t length = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    Desk desk;
    desk.preferences.set("Quillon.screens.openlp", true);
    desk.preferences.set("Quillon.screens.openlp.address", "127.0.0.1:" + std::to_string(ntohs(address.sin_port)));
    desk.start({});
    std::vector<double> microseconds;
    int verse = 0;
    for (auto _ : state) {
        const auto started = Clock::now();
        desk.bridge->announce(passage(++verse % 176 + 1));
        if (!readable(listener, std::chrono::seconds(2)))
            return state.SkipWithError("OpenLP's request never came");
        const int connection = ::accept(listener, nullptr, nullptr);
        char bytes[512];
        if (!readable(connection, std::chrono::seconds(2)) || ::recv(connection, bytes, sizeof bytes, 0) <= 0)
            return state.SkipWithError("OpenLP's request was empty");
        const std::chrono::duration<double> elapsed = Clock::now() - started;
        state.SetIterationTime(elapsed.count());
        microseconds.push_back(elapsed.count() * 1e6);
        ::close(connection); // the outlet gives this passage up and is free for the next
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    ::close(listener);
    spdlog::set_level(spdlog::level::info);
    report(state, microseconds);
}
BENCHMARK(BM_AnnounceToOpenLpRequest)->UseManualTime()->Iterations(300)->Unit(benchmark::kMicrosecond);

void BM_AnnounceToBibleSyncPacket(benchmark::State& state) {
    testing::PrivateNetwork network;
    if (!network.available())
        return state.SkipWithError(network.why().c_str());
    const int listener = ::socket(AF_INET, SOCK_DGRAM, 0);
    int one = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(22272);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ip_mreq group{};
    ::inet_pton(AF_INET, "239.225.27.227", &group.imr_multiaddr);
    ::inet_pton(AF_INET, "127.0.0.1", &group.imr_interface);
    ::setsockopt(listener, IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof group);
    Desk desk;
    desk.preferences.set("Quillon.screens.bibleSync", true);
    desk.start({});
    std::vector<double> microseconds;
    int verse = 0;
    for (auto _ : state) {
        const std::string osis = "Ps.119." + std::to_string(++verse % 176 + 1);
        const auto started = Clock::now();
        desk.bridge->announce(passage(verse % 176 + 1));
        // Presence packets and beacons pass by; the navigation packet names the verse.
        for (;;) {
            if (!readable(listener, std::chrono::seconds(2)))
                return state.SkipWithError("no navigation packet came");
            char packet[2048];
            const auto size = ::recv(listener, packet, sizeof packet, 0);
            if (size > 32 && packet[5] == 2 && std::string(packet, size).find(osis + "\n") != std::string::npos)
                break;
        }
        const std::chrono::duration<double> elapsed = Clock::now() - started;
        state.SetIterationTime(elapsed.count());
        microseconds.push_back(elapsed.count() * 1e6);
    }
    ::close(listener);
    report(state, microseconds);
}
BENCHMARK(BM_AnnounceToBibleSyncPacket)->UseManualTime()->Iterations(300)->Unit(benchmark::kMicrosecond);

void BM_AnnounceToLivePageEvent(benchmark::State& state) {
    Desk desk;
    screens::ScreenOutletChoices choices;
    choices.livePage = true;
    choices.livePagePort = 0;
    desk.start(choices);
    const auto url = desk.outlets->statuses().front().state.address;
    const auto port = static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1)));
    testing::EventStreamClient page(port, "/events");
    page.nextPassage(); // the passage live when the page opened
    std::vector<double> microseconds;
    int verse = 0;
    for (auto _ : state) {
        const auto started = Clock::now();
        desk.bridge->announce(passage(++verse % 176 + 1));
        if (!page.nextPassage())
            return state.SkipWithError("the page heard nothing");
        const std::chrono::duration<double> elapsed = Clock::now() - started;
        state.SetIterationTime(elapsed.count());
        microseconds.push_back(elapsed.count() * 1e6);
    }
    report(state, microseconds);
}
BENCHMARK(BM_AnnounceToLivePageEvent)->UseManualTime()->Iterations(300)->Unit(benchmark::kMicrosecond);

// From announce until Chromium, whose page was told beforehand to watch for the passage, answers
// that the page shows it. The answer's way back over the DevTools socket is counted too, so the
// figure is an upper bound of announce to the update reaching the browser.
void BM_AnnounceToBrowserShowing(benchmark::State& state) {
    if (testing::HeadlessBrowser::executable().empty())
        return state.SkipWithError("Chromium is not installed");
    Desk desk;
    screens::ScreenOutletChoices choices;
    choices.livePage = true;
    choices.livePagePort = 0;
    desk.start(choices);
    testing::HeadlessBrowser browser(desk.folder / "profile");
    if (!browser.open(desk.outlets->statuses().front().state.address))
        return state.SkipWithError("Chromium did not open the live page");
    // `source` is the page's EventSource; 1 is OPEN.
    const auto connected = browser.evaluate(
        "new Promise(open => { const check = () => source.readyState === 1 ? open(true) : setTimeout(check, 10);"
        " check(); })");
    if (!connected)
        return state.SkipWithError("the page opened no event stream");
    std::vector<double> microseconds;
    int verse = 0;
    for (auto _ : state) {
        const auto next = passage(++verse % 176 + 1);
        browser.evaluate("window.seen = new Promise(seen => {"
                         " const reference = document.getElementById('reference');"
                         " const observer = new MutationObserver(() => {"
                         "  if (reference.textContent === '" +
                         next.reference +
                         "') { observer.disconnect(); seen(true); } });"
                         " observer.observe(reference, {subtree: true, childList: true, characterData: true});"
                         " setTimeout(() => seen(false), 5000); }), true");
        const auto started = Clock::now();
        desk.bridge->announce(next);
        const auto seen = browser.evaluate("window.seen");
        if (!seen || *seen != true)
            return state.SkipWithError("the browser did not show the passage");
        const std::chrono::duration<double> elapsed = Clock::now() - started;
        state.SetIterationTime(elapsed.count());
        microseconds.push_back(elapsed.count() * 1e6);
    }
    report(state, microseconds);
}
BENCHMARK(BM_AnnounceToBrowserShowing)->UseManualTime()->Iterations(50)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
