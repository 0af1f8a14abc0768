#include "HeadlessBrowser.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <vector>

extern char** environ;

namespace quillon::testing {

namespace {

using Clock = std::chrono::steady_clock;

} // namespace

std::filesystem::path HeadlessBrowser::executable() {
    for (const char* candidate : {"/usr/bin/chromium", "/usr/bin/chromium-browser"})
        if (::access(candidate, X_OK) == 0)
            return candidate;
    return {};
}

HeadlessBrowser::HeadlessBrowser(const std::filesystem::path& profile) {
    const auto program = executable();
    int ends[2];
    if (program.empty() || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    // The flags keep the browser off the network (this machine's is closed) and keep a tab that
    // is not in front from being slowed down.
    std::vector<std::string> arguments = {program.string(),
                                          "--headless",
                                          "--no-sandbox",
                                          "--disable-gpu",
                                          "--disable-quic",
                                          "--no-first-run",
                                          "--disable-background-networking",
                                          "--disable-component-update",
                                          "--disable-sync",
                                          "--disable-background-timer-throttling",
                                          "--disable-renderer-backgrounding",
                                          "--hide-scrollbars",
                                          "--window-size=1280,720",
                                          "--remote-debugging-pipe",
                                          "--user-data-dir=" + profile.string(),
                                          "about:blank"};
    std::vector<char*> argv;
    for (auto& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 4);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    // A group of its own, so the browser's helper processes can be ended with it.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    if (posix_spawn(&m_pid, argv[0], &actions, &attributes, argv.data(), environ) != 0)
        m_pid = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (m_pid > 0)
        m_socket = ends[0];
    else
        ::close(ends[0]);
}

HeadlessBrowser::~HeadlessBrowser() {
    if (m_socket >= 0) {
        call("Browser.close", nlohmann::json::object(), std::chrono::seconds(2));
        ::close(m_socket);
    }
    if (m_pid <= 0)
        return;
    const auto deadline = Clock::now() + std::chrono::seconds(3);
    while (::waitpid(m_pid, nullptr, WNOHANG) == 0) {
        if (Clock::now() > deadline) {
            ::kill(-m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

bool HeadlessBrowser::open(const std::string& url) {
    const auto created = call("Target.createTarget", {{"url", "about:blank"}}, std::chrono::seconds(20));
    if (!created || !created->contains("targetId"))
        return false;
    const auto attached = call("Target.attachToTarget", {{"targetId", (*created)["targetId"]}, {"flatten", true}},
                               std::chrono::seconds(10));
    if (!attached || !attached->contains("sessionId"))
        return false;
    m_session = (*attached)["sessionId"].get<std::string>();
    // Navigating from the blank page answers once the page's own document is in place; script
    // evaluated after that runs in it, and waits here for its load.
    const auto navigated = call("Page.navigate", {{"url", url}}, std::chrono::seconds(10), true);
    if (!navigated || navigated->contains("errorText"))
        return false;
    const auto loaded = evaluate("new Promise(loaded => document.readyState === 'complete' ? loaded(true)"
                                 " : addEventListener('load', () => loaded(true)))");
    return loaded && *loaded == true;
}

std::optional<nlohmann::json> HeadlessBrowser::evaluate(const std::string& expression,
                                                        std::chrono::milliseconds timeout) {
    if (m_session.empty())
        return std::nullopt;
    const auto answer =
        call("Runtime.evaluate", {{"expression", expression}, {"awaitPromise", true}, {"returnByValue", true}}, timeout,
             true);
    if (!answer || answer->contains("exceptionDetails") || !answer->contains("result"))
        return std::nullopt;
    return (*answer)["result"].value("value", nlohmann::json());
}

std::optional<nlohmann::json> HeadlessBrowser::call(const std::string& method, const nlohmann::json& params,
                                                    std::chrono::milliseconds timeout, bool inPage) {
    if (m_socket < 0)
        return std::nullopt;
    const int id = m_nextId++;
    nlohmann::json command = {{"id", id}, {"method", method}, {"params", params}};
    if (inPage)
        command["sessionId"] = m_session;
    // Each message ends with a NUL byte, both ways.
    const std::string bytes = command.dump() + '\0';
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto written = ::send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (written <= 0)
            return std::nullopt;
        sent += static_cast<std::size_t>(written);
    }
    const auto deadline = Clock::now() + timeout;
    while (auto message = nextMessage(deadline)) {
        auto answer = nlohmann::json::parse(*message, nullptr, false);
        if (!answer.is_object() || answer.value("id", -1) != id)
            continue;
        if (!answer.contains("result"))
            return std::nullopt;
        return answer["result"];
    }
    return std::nullopt;
}

std::optional<std::string> HeadlessBrowser::nextMessage(Clock::time_point deadline) {
    for (;;) {
        if (auto end = m_received.find('\0'); end != std::string::npos) {
            std::string message = m_received.substr(0, end);
            m_received.erase(0, end + 1);
            return message;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd readable{m_socket, POLLIN, 0};
        if (left <= 0 || ::poll(&readable, 1, static_cast<int>(left)) <= 0)
            return std::nullopt;
        char chunk[65536];
        const auto size = ::read(m_socket, chunk, sizeof chunk);
        if (size <= 0)
            return std::nullopt;
        m_received.append(chunk, static_cast<std::size_t>(size));
    }
}

} // namespace quillon::testing
