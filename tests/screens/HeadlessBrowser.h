#pragma once

#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include <sys/types.h>

namespace quillon::testing {

/// Debian's Chromium without a window, driven over the DevTools protocol through a socket it
/// reads as descriptor 3 and writes as descriptor 4: it opens one page and runs script in it.
class HeadlessBrowser {
public:
    /// The browser's program, or empty when it is not installed.
    static std::filesystem::path executable();

    /// Starts the browser with `profile` (a new, empty folder) as its user data.
    explicit HeadlessBrowser(const std::filesystem::path& profile);
    ~HeadlessBrowser();
    HeadlessBrowser(const HeadlessBrowser&) = delete;
    HeadlessBrowser& operator=(const HeadlessBrowser&) = delete;

    /// Opens `url` in a new tab and waits for it to load; false when the browser did not answer
    /// or the page could not be loaded.
    bool open(const std::string& url);
    /// Evaluates `expression` in the page, awaiting it when it is a promise; its value, or
    /// nothing when it threw, the browser did not answer in `timeout`, or no page is open.
    std::optional<nlohmann::json> evaluate(const std::string& expression,
                                           std::chrono::milliseconds timeout = std::chrono::seconds(10));

private:
    /// Sends one command and waits for its answer's "result", skipping the events in between.
    std::optional<nlohmann::json> call(const std::string& method, const nlohmann::json& params,
                                       std::chrono::milliseconds timeout, bool inPage = false);
    std::optional<std::string> nextMessage(std::chrono::steady_clock::time_point deadline);

    pid_t m_pid = -1;
    int m_socket = -1;
    int m_nextId = 1;
    std::string m_session;
    std::string m_received;
};

} // namespace quillon::testing
