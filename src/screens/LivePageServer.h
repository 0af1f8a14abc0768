#pragma once

#include "screens/LivePageOptions.h"
#include "screens/ScreenOutlet.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace quillon::screens {

class LivePageConnection;

/// A small HTTP server for streaming software and a confidence monitor: "/" is the lower-third
/// page, "/confidence" the preacher's layout, "/events" the event stream both pages follow.
///
/// All network work runs on the server's own thread; show() and clear() only post the new passage
/// to it, so open tabs, slow readers or a flood of connections never hold up the mesh. Readers
/// that fall behind are dropped (their browser reconnects and gets the passage live then).
class LivePageServer : public ScreenOutlet {
public:
    explicit LivePageServer(LivePageOptions options);
    ~LivePageServer() override;
    LivePageServer(const LivePageServer&) = delete;
    LivePageServer& operator=(const LivePageServer&) = delete;

    /// Opens the listening socket and starts the thread; false (logged) when it cannot listen.
    bool start();
    void stop();

    void show(const mesh::LiveScripture& scripture) override;
    void clear() override;
    std::string name() const override { return "live page"; }
    OutletState state() const override;

    std::uint16_t port() const { return m_port; }
    /// The lower third's address, token included ("http://127.0.0.1:7316/").
    std::string url() const;
    /// Open connections, event streams included.
    std::size_t connectionCount() const { return *m_connectionCount; }
    /// Open event streams (pages following the passage).
    std::size_t streamCount() const { return m_streamCount; }
    /// How often a stream without news gets a comment line, so proxies and tabs keep it open.
    void setKeepAliveInterval(std::chrono::milliseconds interval) { m_keepAliveInterval = interval; }

private:
    friend class LivePageConnection;

    void acceptNext();
    void publish(std::optional<mesh::LiveScripture> live);
    void scheduleKeepAlive();
    // On the server's thread, for connections.
    bool tokenAccepted(std::string_view target) const;
    std::string page(std::string_view path) const;
    std::optional<mesh::LiveScripture> live() const;
    void subscribe(const std::shared_ptr<LivePageConnection>& connection);
    void forget(std::uint64_t identifier);

    LivePageOptions m_options;
    boost::asio::io_context m_io;
    std::optional<boost::asio::executor_work_guard<boost::asio::io_context::executor_type>> m_work;
    boost::asio::ip::tcp::acceptor m_acceptor;
    boost::asio::steady_timer m_keepAliveTimer;
    std::chrono::milliseconds m_keepAliveInterval{15'000};
    std::thread m_thread;
    std::atomic<std::uint16_t> m_port{0};
    std::atomic<std::size_t> m_streamCount{0};
    std::shared_ptr<std::atomic<std::size_t>> m_connectionCount = std::make_shared<std::atomic<std::size_t>>(0);
    std::string m_failure;
    bool m_started = false;
    bool m_stopping = false;

    // Server-thread state.
    std::uint64_t m_nextIdentifier = 1;
    std::map<std::uint64_t, std::weak_ptr<LivePageConnection>> m_streams;
    std::map<std::uint64_t, std::weak_ptr<LivePageConnection>> m_open;

    mutable std::mutex m_liveMutex;
    std::optional<mesh::LiveScripture> m_live;
};

} // namespace quillon::screens
