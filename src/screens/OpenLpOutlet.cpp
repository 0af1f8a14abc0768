#include "screens/OpenLpOutlet.h"

#include "screens/OpenLpBibleChoice.h"

#include <boost/asio/post.hpp>
#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

namespace quillon::screens {

namespace asio = boost::asio;
using nlohmann::json;

namespace {

constexpr const char* optionsTarget = "/api/v2/plugins/bibles/search-options";

/// The JSON of a reply body; discarded (is_discarded()) when the body is not JSON.
json parsed(const std::string& body) {
    return json::parse(body, nullptr, false);
}

} // namespace

OpenLpOutlet::OpenLpOutlet(OpenLpOptions options)
    : m_options(std::move(options)), m_outage("OpenLP at " + m_options.address()),
      m_state{"waiting", "for a passage to send to " + m_options.address(), false, m_options.address(), {}} {}

OpenLpOutlet::~OpenLpOutlet() {
    stop();
}

void OpenLpOutlet::start() {
    if (m_thread.joinable())
        return;
    m_work.emplace(m_io.get_executor());
    m_thread = std::thread([this] { m_io.run(); });
}

void OpenLpOutlet::stop() {
    if (!m_thread.joinable())
        return;
    m_work.reset();
    m_io.stop();
    m_thread.join();
}

void OpenLpOutlet::show(const mesh::LiveScripture& scripture) {
    asio::post(m_io, [this, scripture] { take(scripture); });
}

void OpenLpOutlet::clear() {
    asio::post(m_io, [this] { take(std::nullopt); });
}

OutletState OpenLpOutlet::state() const {
    std::lock_guard lock(m_stateMutex);
    return m_state;
}

void OpenLpOutlet::setState(std::string headline, std::string detail, bool failing) {
    std::lock_guard lock(m_stateMutex);
    if (failing)
        m_state.lastFailure = detail;
    m_state.headline = std::move(headline);
    m_state.detail = std::move(detail);
    m_state.failing = failing;
}

void OpenLpOutlet::take(std::optional<mesh::LiveScripture> passage) {
    m_next = std::move(passage);
    if (!m_busy)
        runNext();
}

void OpenLpOutlet::runNext() {
    if (!m_next)
        return;
    auto passage = std::move(*m_next);
    m_next.reset();
    m_busy = true;
    if (passage)
        showPassage(*passage);
    else
        hideText();
}

void OpenLpOutlet::finish(const std::string& failure, std::string headline, std::string detail) {
    if (failure.empty()) {
        m_outage.succeeded();
        setState(std::move(headline), std::move(detail));
    } else {
        m_outage.failed(failure);
        setState("failing", failure, true);
    }
    m_busy = false;
    runNext();
}

// MARK: showing a passage

void OpenLpOutlet::showPassage(const mesh::LiveScripture& passage) {
    call("GET", optionsTarget, {}, [this, passage](const HttpCallResult& result) {
        if (auto failure = problem(result, "its list of Bibles"); !failure.empty())
            return finish(failure);
        chooseBible(passage, result);
    });
}

void OpenLpOutlet::chooseBible(const mesh::LiveScripture& passage, const HttpCallResult& options) {
    const json answer = parsed(options.body);
    std::vector<std::string> bibles;
    std::string selected;
    if (answer.is_array())
        for (const auto& option : answer)
            if (option.is_object() && option.value("name", json()) == "primary bible") {
                for (const auto& bible : option.value("list", json::array()))
                    if (bible.is_string())
                        bibles.push_back(bible.get<std::string>());
                if (auto chosen = option.find("selected"); chosen != option.end() && chosen->is_string())
                    selected = chosen->get<std::string>();
            }
    if (!answer.is_array())
        return finish("its list of Bibles is not the JSON its API describes");
    if (bibles.empty())
        return finish("it has no Bible to show " + passage.reference + " from");
    const auto closest = closestOpenLpBible(passage.version, bibles);
    const std::string bible = closest.value_or(selected.empty() ? bibles.front() : selected);
    if (bible == selected)
        return findAndSendLive(passage, bible);
    const json change = {{"option", "primary bible"}, {"value", bible}};
    call("POST", optionsTarget, change.dump(), [this, passage, bible](const HttpCallResult& result) {
        if (auto failure = problem(result, "the choice of " + bible); !failure.empty())
            return finish(failure);
        findAndSendLive(passage, bible);
    });
}

void OpenLpOutlet::findAndSendLive(const mesh::LiveScripture& passage, const std::string& bible) {
    const std::string target = "/api/v2/plugins/bibles/search?text=" + percentEncode(passage.reference);
    call("GET", target, {}, [this, passage, bible](const HttpCallResult& result) {
        if (auto failure = problem(result, "the search for " + passage.reference); !failure.empty())
            return finish(failure);
        const json found = parsed(result.body);
        if (!found.is_array())
            return finish("its search for " + passage.reference + " is not the JSON its API describes");
        if (found.empty())
            return finish("its " + bible + " has no " + passage.reference);
        // OpenLP answers [[id, text], …]; the id is the reference as OpenLP reads it.
        std::string id = passage.reference;
        if (found.front().is_array() && !found.front().empty() && found.front().front().is_string())
            id = found.front().front().get<std::string>();
        sendLive(passage, bible, id);
    });
}

void OpenLpOutlet::sendLive(const mesh::LiveScripture& passage, const std::string& bible, const std::string& id) {
    const std::string shown = passage.reference + " from " + bible;
    call("POST", "/api/v2/plugins/bibles/live", json{{"id", id}}.dump(),
         [this, shown, passage](const HttpCallResult& result) {
             if (auto failure = problem(result, "going live with " + passage.reference); !failure.empty())
                 return finish(failure);
             if (!m_textHidden)
                 return finish({}, "showing", shown);
             // A passage after a clear must bring the text back, or it would go live unseen.
             call("POST", "/api/v2/core/display", R"({"display":"show"})",
                  [this, shown](const HttpCallResult& display) {
                      auto failure = problem(display, "showing the display again");
                      if (failure.empty())
                          m_textHidden = false;
                      finish(failure, "showing", shown);
                  });
         });
}

// MARK: clearing

void OpenLpOutlet::hideText() {
    call("POST", "/api/v2/core/display", R"({"display":"theme"})", [this](const HttpCallResult& result) {
        auto failure = problem(result, "the clear");
        if (failure.empty())
            m_textHidden = true;
        finish(failure, "cleared");
    });
}

// MARK: requests

void OpenLpOutlet::call(const std::string& method, const std::string& target, const std::string& body, Reply reply,
                        bool mayLogIn) {
    HttpCallRequest request{m_options.host, m_options.port, method, target, body, {}, m_options.timeout};
    if (m_token)
        request.headers.emplace_back("Authorization", *m_token);
    startHttpCall(m_io, std::move(request),
                  [this, method, target, body, reply = std::move(reply), mayLogIn](HttpCallResult result) {
                      // A token OpenLP no longer knows (it restarted, or the login was switched on)
                      // is replaced once; a second 401 is the answer.
                      if (result.status != 401 || !mayLogIn || m_options.user.empty())
                          return reply(std::move(result));
                      m_token.reset();
                      logIn([this, method, target, body, reply](const std::string& failure) {
                          if (!failure.empty())
                              return finish(failure);
                          call(method, target, body, reply, false);
                      });
                  });
}

void OpenLpOutlet::logIn(Done done) {
    const json credentials = {{"username", m_options.user}, {"password", m_options.password}};
    HttpCallRequest request{m_options.host,   m_options.port, "POST", "/api/v2/core/login", credentials.dump(), {},
                            m_options.timeout};
    startHttpCall(m_io, std::move(request), [this, done = std::move(done)](const HttpCallResult& result) {
        if (result.status == 401)
            return done("it refused the login of \"" + m_options.user +
                        "\"; check the user and the password kept for it");
        if (auto failure = problem(result, "the login"); !failure.empty())
            return done(failure);
        const json answer = parsed(result.body);
        if (!answer.is_object() || !answer.contains("token") || !answer["token"].is_string())
            return done("its login answer holds no token");
        m_token = answer["token"].get<std::string>();
        done({});
    });
}

std::string OpenLpOutlet::problem(const HttpCallResult& result, const std::string& what) const {
    if (!result.failure.empty())
        return "no answer to " + what + " (" + result.failure + ")";
    if (result.status >= 200 && result.status < 300)
        return {};
    if (result.status == 401)
        return m_options.user.empty() ? "it asks for a login; set \"Quillon.screens.openlp.user\" and its password"
                                      : "it refused " + what + " after a fresh login";
    return "it answered " + what + " with HTTP " + std::to_string(result.status);
}

} // namespace quillon::screens
