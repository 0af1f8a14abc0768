#pragma once

#include "screens/HttpCall.h"
#include "screens/OpenLpOptions.h"
#include "screens/OutageLog.h"
#include "screens/ScreenOutlet.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace quillon::screens {

/// Makes each announced passage live in OpenLP through its remote API (version 2): it picks the
/// Bible closest to the announced version (closestOpenLpBible), checks OpenLP can find the
/// reference, and sends it live; a clear shows OpenLP's theme without text until the next passage.
///
/// Requests run on the outlet's own thread, one passage at a time: while OpenLP is slow, newer
/// announcements replace the waiting one instead of queueing behind it. With a user set, a 401
/// logs in (the token goes in the "Authorization" header) and the request is tried once more.
class OpenLpOutlet : public ScreenOutlet {
public:
    explicit OpenLpOutlet(OpenLpOptions options);
    ~OpenLpOutlet() override;
    OpenLpOutlet(const OpenLpOutlet&) = delete;
    OpenLpOutlet& operator=(const OpenLpOutlet&) = delete;

    /// Starts the outlet's thread; nothing is sent until the first announcement.
    void start();
    /// Abandons requests under way and joins the thread. Safe to call twice.
    void stop();

    void show(const mesh::LiveScripture& scripture) override;
    void clear() override;
    std::string name() const override { return "OpenLP"; }
    OutletState state() const override;

private:
    using Reply = std::function<void(HttpCallResult)>;
    using Done = std::function<void(const std::string& failure)>;

    // On the outlet's thread.
    void take(std::optional<mesh::LiveScripture> passage);
    void runNext();
    void showPassage(const mesh::LiveScripture& passage);
    void chooseBible(const mesh::LiveScripture& passage, const HttpCallResult& options);
    void findAndSendLive(const mesh::LiveScripture& passage, const std::string& bible);
    void sendLive(const mesh::LiveScripture& passage, const std::string& bible, const std::string& id);
    void hideText();
    /// Sends one request; a failed login in between ends the passage's exchange (finish) itself.
    void call(const std::string& method, const std::string& target, const std::string& body, Reply reply,
              bool mayLogIn = true);
    void logIn(Done done);
    /// The sentence for a reply that is not a success; empty for a success.
    std::string problem(const HttpCallResult& result, const std::string& what) const;
    void finish(const std::string& failure, std::string headline = {}, std::string detail = {});
    void setState(std::string headline, std::string detail, bool failing = false);

    OpenLpOptions m_options;
    boost::asio::io_context m_io;
    std::optional<boost::asio::executor_work_guard<boost::asio::io_context::executor_type>> m_work;
    std::thread m_thread;
    OutageLog m_outage;

    // Outlet-thread state.
    bool m_busy = false;
    /// The newest announcement or clear (nothing inside) not yet sent.
    std::optional<std::optional<mesh::LiveScripture>> m_next;
    std::optional<std::string> m_token;
    /// True after a clear, until a passage has been shown again.
    bool m_textHidden = false;

    mutable std::mutex m_stateMutex;
    OutletState m_state;
};

} // namespace quillon::screens
