#pragma once

#include "mesh/MeshScriptureReference.h"
#include "screens/BibleSyncOptions.h"
#include "screens/OutageLog.h"
#include "screens/ScreenOutlet.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace quillon::screens {

/// The desk in a BibleSync conversation (Debian's libbiblesync): each announced passage becomes
/// one navigation packet, so Xiphos, BibleTime and other listening programs turn to it, and
/// navigation from a trusted speaker is handed to `onNavigation`, which focuses it on the desk.
///
/// The library is polled and not thread-safe, so it lives on the outlet's own thread: show()
/// only leaves the passage there (a newer one replaces it) and wakes the thread. Packets the
/// library calls malformed, and navigation from speakers nobody trusted, are dropped and logged
/// once (per outage, per speaker).
class BibleSyncOutlet : public ScreenOutlet {
public:
    /// Called on the outlet's thread with the speaker's user name and the passage it turned to.
    using Navigation = std::function<void(const std::string& speaker, const mesh::MeshScriptureReference& reference)>;

    BibleSyncOutlet(BibleSyncOptions options, Navigation onNavigation);
    ~BibleSyncOutlet() override;
    BibleSyncOutlet(const BibleSyncOutlet&) = delete;
    BibleSyncOutlet& operator=(const BibleSyncOutlet&) = delete;

    /// Joins the conversation and starts polling; false (logged, and kept as the state) when the
    /// library cannot open its multicast sockets.
    bool start();
    void stop();

    void show(const mesh::LiveScripture& scripture) override;
    void clear() override {} // BibleSync has no "nothing": the listeners stay where they are
    std::string name() const override { return "BibleSync"; }
    OutletState state() const override;

    /// Called by the library's callback on the outlet's thread.
    void received(char command, const std::string& speakerKey, const std::string& bible, const std::string& reference,
                  const std::string& alternative, const std::string& info);

private:
    struct Library;
    struct Speaker {
        std::string user;
        std::string address;
        bool trusted = false;
    };

    void run();
    void transmit(const mesh::LiveScripture& passage);
    void speakerHeard(const std::string& key, const std::string& user, const std::string& address);
    void navigated(const std::string& key, const std::string& reference, const std::string& alternative);
    void setState(std::string headline, std::string detail = {}, bool failing = false);

    BibleSyncOptions m_options;
    Navigation m_onNavigation;
    std::unique_ptr<Library> m_library;
    OutageLog m_sending{"BibleSync"};
    OutageLog m_packets{"BibleSync packets"};
    std::thread m_thread;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopping = false;
    std::optional<mesh::LiveScripture> m_outgoing;

    // Outlet-thread state.
    std::map<std::string, Speaker> m_speakers;
    /// Untrusted speakers already logged, so each is named once.
    std::set<std::string> m_ignoredSpeakers;

    mutable std::mutex m_stateMutex;
    OutletState m_state{"off", {}, false, {}, {}};
};

} // namespace quillon::screens
