#include "support/StubModelServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <nlohmann/json.hpp>

#include <sys/socket.h>

#include <cctype>

namespace quillon::testing {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;
using nlohmann::json;

struct StubModelServer::Impl {
    asio::io_context io;
    tcp::acceptor acceptor{io};
};

StubModelServer::StubModelServer(std::string basePath)
    : m_impl(std::make_unique<Impl>()), m_basePath(std::move(basePath)) {
    tcp::endpoint local(asio::ip::make_address("127.0.0.1"), 0);
    m_impl->acceptor.open(local.protocol());
    m_impl->acceptor.set_option(tcp::acceptor::reuse_address(true));
    m_impl->acceptor.bind(local);
    m_impl->acceptor.listen();
    m_port = m_impl->acceptor.local_endpoint().port();
    m_acceptor = std::thread([this] { acceptLoop(); });
}

StubModelServer::~StubModelServer() {
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_stopped.notify_all();
    // Shutting the listening socket down wakes the blocking accept; closing it waits for the join.
    ::shutdown(m_impl->acceptor.native_handle(), SHUT_RDWR);
    m_acceptor.join();
    beast::error_code ignored;
    m_impl->acceptor.close(ignored);
    std::vector<std::thread> connections;
    {
        std::lock_guard lock(m_mutex);
        connections.swap(m_connections);
    }
    for (std::thread& connection : connections)
        connection.join();
}

std::string StubModelServer::endpoint() const {
    return "http://127.0.0.1:" + std::to_string(m_port) + m_basePath;
}

void StubModelServer::setModels(std::vector<std::string> models) {
    std::lock_guard lock(m_mutex);
    m_models = std::move(models);
}

void StubModelServer::setModelsBehaviour(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_modelsBehaviour = std::make_unique<Behaviour>(std::move(behaviour));
}

void StubModelServer::queueChat(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_chatQueue.push_back(std::move(behaviour));
}

void StubModelServer::setDefaultChat(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_defaultChat = std::move(behaviour);
}

void StubModelServer::setEmbeddingsBehaviour(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_embeddingsBehaviour = std::make_unique<Behaviour>(std::move(behaviour));
}

void StubModelServer::queueTranscription(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_transcriptionQueue.push_back(std::move(behaviour));
}

void StubModelServer::setDefaultTranscription(Behaviour behaviour) {
    std::lock_guard lock(m_mutex);
    m_defaultTranscription = std::move(behaviour);
}

std::vector<StubModelServer::RecordedRequest> StubModelServer::requests() const {
    std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<std::pair<std::string, std::string>> StubModelServer::chatMessages() const {
    std::vector<std::pair<std::string, std::string>> messages;
    for (const RecordedRequest& request : requests()) {
        if (request.target != m_basePath + "/chat/completions")
            continue;
        json body = json::parse(request.body, nullptr, false);
        if (!body.is_object() || !body.contains("messages"))
            continue;
        std::pair<std::string, std::string> pair;
        for (const json& message : body["messages"]) {
            if (message.value("role", "") == "system")
                pair.first = message.value("content", "");
            else if (message.value("role", "") == "user")
                pair.second = message.value("content", "");
        }
        messages.push_back(pair);
    }
    return messages;
}

std::vector<float> StubModelServer::stubEmbedding(const std::string& text) {
    std::vector<float> vector(8, 0.0f);
    for (unsigned char c : text)
        if (std::isalpha(c))
            vector[static_cast<std::size_t>(std::tolower(c) - 'a') % 8] += 1.0f;
    return vector;
}

void StubModelServer::acceptLoop() {
    for (;;) {
        auto socket = std::make_shared<tcp::socket>(m_impl->io);
        beast::error_code error;
        m_impl->acceptor.accept(*socket, error);
        std::lock_guard lock(m_mutex);
        if (m_stopping)
            return;
        if (error)
            continue;
        m_connections.emplace_back([this, socket] { serve(socket); });
    }
}

StubModelServer::Behaviour StubModelServer::nextBehaviour(const std::string& method, const std::string& target) {
    std::lock_guard lock(m_mutex);
    if (method == "GET" && target == m_basePath + "/models") {
        if (m_modelsBehaviour)
            return *m_modelsBehaviour;
        json list = {{"object", "list"}, {"data", json::array()}};
        for (const std::string& model : m_models)
            list["data"].push_back({{"id", model}, {"object", "model"}, {"owned_by", "stub"}});
        return Behaviour::statusCode(200, list.dump());
    }
    if (method == "POST" && target == m_basePath + "/chat/completions") {
        if (m_chatQueue.empty())
            return m_defaultChat;
        Behaviour next = m_chatQueue.front();
        m_chatQueue.pop_front();
        return next;
    }
    if (method == "POST" && target == m_basePath + "/embeddings") {
        if (m_embeddingsBehaviour)
            return *m_embeddingsBehaviour;
        return Behaviour{Behaviour::Kind::reply, 200, "\x01embeddings"};
    }
    if (method == "POST" && target == m_basePath + "/audio/transcriptions") {
        if (m_transcriptionQueue.empty())
            return m_defaultTranscription;
        Behaviour next = m_transcriptionQueue.front();
        m_transcriptionQueue.pop_front();
        return next;
    }
    return Behaviour::statusCode(404, R"({"error":{"message":"File Not Found"}})");
}

void StubModelServer::serve(std::shared_ptr<void> handle) {
    auto socket = std::static_pointer_cast<tcp::socket>(handle);
    beast::error_code error;
    beast::flat_buffer buffer;
    http::request_parser<http::string_body> parser;
    // A recording's piece is close to Beast's 1 MB default.
    parser.body_limit(16 * 1024 * 1024);
    http::read(*socket, buffer, parser, error);
    if (error)
        return;
    http::request<http::string_body> request = parser.release();
    std::string method(request.method_string());
    std::string target(request.target());
    {
        std::lock_guard lock(m_mutex);
        m_requests.push_back({method, target, request.body()});
    }
    Behaviour behaviour = nextBehaviour(method, target);

    http::response<http::string_body> response;
    response.version(11);
    response.set(http::field::content_type, "application/json");
    response.keep_alive(false);
    switch (behaviour.kind) {
    case Behaviour::Kind::neverReply: {
        std::unique_lock lock(m_mutex);
        m_stopped.wait(lock, [this] { return m_stopping; });
        return;
    }
    case Behaviour::Kind::dropConnection:
        socket->shutdown(tcp::socket::shutdown_both, error);
        socket->close(error);
        return;
    case Behaviour::Kind::status:
        response.result(behaviour.status);
        response.body() = behaviour.status == 503 && behaviour.text.empty()
                              ? R"({"error":{"code":503,"message":"Loading model","type":"unavailable_error"}})"
                              : behaviour.text;
        break;
    case Behaviour::Kind::reply:
        response.result(http::status::ok);
        if (behaviour.text == "\x01embeddings") {
            json body = json::parse(request.body(), nullptr, false);
            json data = json::array();
            if (body.is_object() && body.contains("input") && body["input"].is_array()) {
                int index = 0;
                for (const json& input : body["input"])
                    data.push_back({{"object", "embedding"},
                                    {"index", index++},
                                    {"embedding", stubEmbedding(input.is_string() ? input.get<std::string>() : "")}});
            }
            response.body() = json{{"object", "list"}, {"data", data}}.dump();
        } else {
            response.body() =
                json{{"id", "chatcmpl-stub"},
                     {"object", "chat.completion"},
                     {"choices", json::array({{{"index", 0},
                                               {"message", {{"role", "assistant"}, {"content", behaviour.text}}},
                                               {"finish_reason", "stop"}}})}}
                    .dump();
        }
        break;
    }
    response.prepare_payload();
    http::write(*socket, response, error);
    socket->shutdown(tcp::socket::shutdown_both, error);
}

} // namespace quillon::testing
