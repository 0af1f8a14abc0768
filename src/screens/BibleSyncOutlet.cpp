#include "screens/BibleSyncOutlet.h"

#include "screens/OsisReference.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <string>

// The library's header defines `min` and `_` as macros and opens namespace std, so it comes last
// and only here.
#include <biblesync/biblesync.hh>
#undef min
#undef _

namespace quillon::screens {

struct BibleSyncOutlet::Library {
    explicit Library(const std::string& user) : sync("Quillon", "1", user) {}
    ::BibleSync sync;
};

namespace {

/// The outlet whose library is being driven on this thread: the library's callback carries no
/// context of its own.
thread_local BibleSyncOutlet* t_driving = nullptr;

void navigation(char command, std::string speakerKey, std::string bible, std::string reference, std::string alternative,
                std::string, std::string, std::string info, std::string) {
    if (t_driving)
        t_driving->received(command, speakerKey, bible, reference, alternative, info);
}

/// Sets t_driving for one call into the library.
class Driving {
public:
    explicit Driving(BibleSyncOutlet* outlet) : m_previous(std::exchange(t_driving, outlet)) {}
    ~Driving() { t_driving = m_previous; }
    Driving(const Driving&) = delete;
    Driving& operator=(const Driving&) = delete;

private:
    BibleSyncOutlet* m_previous;
};

} // namespace

BibleSyncOutlet::BibleSyncOutlet(BibleSyncOptions options, Navigation onNavigation)
    : m_options(std::move(options)), m_onNavigation(std::move(onNavigation)) {}

BibleSyncOutlet::~BibleSyncOutlet() {
    stop();
}

bool BibleSyncOutlet::start() {
    if (m_thread.joinable())
        return true;
    m_library = std::make_unique<Library>(m_options.user);
    // Beacons go out every few polls; the protocol wants one about every ten seconds.
    const auto polls = std::chrono::seconds(10) / std::max(m_options.pollInterval, std::chrono::milliseconds(1));
    m_library->sync.setBeaconCount(static_cast<std::uint8_t>(std::clamp<long long>(polls, 3, 10)));
    BibleSync_mode mode = BSP_MODE_DISABLE;
    {
        Driving driving(this);
        mode = m_library->sync.setMode(BSP_MODE_PERSONAL, navigation, m_options.passphrase);
    }
    if (mode != BSP_MODE_PERSONAL) {
        m_library.reset();
        setState("off", "could not join BibleSync on this network", true);
        spdlog::error("BibleSync could not join the local network's multicast group");
        return false;
    }
    setState("listening", "as \"" + m_options.user + "\"");
    m_stopping = false;
    m_thread = std::thread([this] { run(); });
    return true;
}

void BibleSyncOutlet::stop() {
    if (!m_thread.joinable())
        return;
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
    {
        Driving driving(this);
        m_library->sync.setMode(BSP_MODE_DISABLE);
    }
    m_library.reset();
    setState("off");
}

void BibleSyncOutlet::show(const mesh::LiveScripture& scripture) {
    {
        std::lock_guard lock(m_mutex);
        m_outgoing = scripture;
    }
    m_wake.notify_one();
}

OutletState BibleSyncOutlet::state() const {
    std::lock_guard lock(m_stateMutex);
    return m_state;
}

void BibleSyncOutlet::setState(std::string headline, std::string detail, bool failing) {
    std::lock_guard lock(m_stateMutex);
    if (failing)
        m_state.lastFailure = detail;
    m_state.headline = std::move(headline);
    m_state.detail = std::move(detail);
    m_state.failing = failing;
}

void BibleSyncOutlet::run() {
    auto nextPoll = std::chrono::steady_clock::now();
    for (;;) {
        std::optional<mesh::LiveScripture> outgoing;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait_until(lock, nextPoll, [this] { return m_stopping || m_outgoing.has_value(); });
            if (m_stopping)
                return;
            outgoing = std::exchange(m_outgoing, std::nullopt);
        }
        if (outgoing)
            transmit(*outgoing);
        if (std::chrono::steady_clock::now() < nextPoll)
            continue;
        Driving driving(this);
        ::BibleSync::Receive(&m_library->sync);
        nextPoll = std::chrono::steady_clock::now() + m_options.pollInterval;
    }
}

void BibleSyncOutlet::transmit(const mesh::LiveScripture& passage) {
    const auto osis = osisReference(passage.reference);
    if (!osis) {
        spdlog::debug("BibleSync: {} is not a reference the Bible programs can turn to", passage.reference);
        return;
    }
    BibleSync_xmit_status status = BSP_XMIT_FAILED;
    {
        Driving driving(this);
        status = m_library->sync.Transmit(passage.version, *osis, passage.reference, "1", "BIBLE-VERSE");
    }
    if (status != BSP_XMIT_OK) {
        m_sending.failed("could not send " + passage.reference + " (library status " + std::to_string(status) + ")");
        setState("failing", "could not send " + passage.reference, true);
        return;
    }
    m_sending.succeeded();
    setState("sent", passage.reference + " as \"" + m_options.user + "\"");
}

void BibleSyncOutlet::received(char command, const std::string& speakerKey, const std::string& bible,
                               const std::string& reference, const std::string& alternative, const std::string& info) {
    switch (command) {
    case 'S': // a new speaker's beacon: the user name and address arrive in the bible and ref fields
        speakerHeard(speakerKey, bible, reference);
        break;
    case 'D':
        m_speakers.erase(speakerKey);
        break;
    case 'N':
        navigated(speakerKey, reference, alternative);
        break;
    case 'E':
        m_packets.failed("dropped a packet: " + info);
        break;
    case 'M':
        spdlog::debug("BibleSync: ignored a packet for another passphrase or mode: {}", info);
        break;
    default: // presence announcements and chat are not shown on the desk
        break;
    }
}

void BibleSyncOutlet::speakerHeard(const std::string& key, const std::string& user, const std::string& address) {
    // A flood of invented speakers must not grow the table without end.
    if (m_speakers.size() >= 256 && !m_speakers.contains(key)) {
        m_library->sync.listenToSpeaker(false, key);
        return;
    }
    const bool trusted = m_options.trusts(user, address);
    m_speakers[key] = Speaker{user, address, trusted};
    // The library follows the first speaker it hears unless told otherwise; only trust decides.
    m_library->sync.listenToSpeaker(trusted, key);
    spdlog::info("BibleSync: {} speaker \"{}\" at {}", trusted ? "following" : "not following", user, address);
}

void BibleSyncOutlet::navigated(const std::string& key, const std::string& reference, const std::string& alternative) {
    const auto speaker = m_speakers.find(key);
    if (speaker == m_speakers.end() || !speaker->second.trusted) {
        if (m_ignoredSpeakers.size() < 256 && m_ignoredSpeakers.insert(key).second)
            spdlog::warn("BibleSync: ignored navigation from a speaker nobody trusted ({})",
                         speaker == m_speakers.end() ? "not yet introduced" : speaker->second.user);
        return;
    }
    auto passage = referenceFromOsis(reference);
    if (!passage)
        passage = referenceFromOsis(alternative);
    if (!passage) {
        m_packets.failed("\"" + speaker->second.user + "\" turned to a passage Quillon cannot read");
        return;
    }
    m_packets.succeeded();
    if (m_onNavigation)
        m_onNavigation(speaker->second.user, *passage);
}

} // namespace quillon::screens
