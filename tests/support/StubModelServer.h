#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillon::testing {

/// A real OpenAI-compatible HTTP server on 127.0.0.1 with scripted replies, for testing the local
/// model backend and every feature's path end to end. Serves GET <base>/models,
/// POST <base>/chat/completions, POST <base>/embeddings and POST <base>/audio/transcriptions on an
/// ephemeral port.
class StubModelServer {
public:
    /// What the server does with one request.
    struct Behaviour {
        enum class Kind { reply, status, neverReply, dropConnection };
        Kind kind = Kind::reply;
        int status = 200;
        std::string text;

        /// 200 with a chat completion whose message content is `text`.
        static Behaviour reply(std::string text) { return {Kind::reply, 200, std::move(text)}; }
        /// `status` with `body` as it stands (503 with llama-server's "Loading model" error body by default).
        static Behaviour statusCode(int status, std::string body = {}) {
            return {Kind::status, status, std::move(body)};
        }
        /// Reads the request and never answers, until the client gives up or the server stops.
        static Behaviour neverReply() { return {Kind::neverReply, 0, {}}; }
        /// Reads the request and closes the connection without a reply.
        static Behaviour dropConnection() { return {Kind::dropConnection, 0, {}}; }
    };

    struct RecordedRequest {
        std::string method;
        std::string target;
        std::string body;
    };

    explicit StubModelServer(std::string basePath = "/v1");
    ~StubModelServer();
    StubModelServer(const StubModelServer&) = delete;
    StubModelServer& operator=(const StubModelServer&) = delete;

    /// "http://127.0.0.1:<port>/v1".
    std::string endpoint() const;
    std::uint16_t port() const { return m_port; }

    /// Models listed by GET /models (default: "stub-model").
    void setModels(std::vector<std::string> models);
    /// How GET /models answers (default: the list).
    void setModelsBehaviour(Behaviour behaviour);
    /// Replies to chat completions, one per request in order; when the queue is empty the default
    /// (see setDefaultChat) answers.
    void queueChat(Behaviour behaviour);
    void setDefaultChat(Behaviour behaviour);
    /// How POST /embeddings answers; the default reply embeds each input deterministically.
    void setEmbeddingsBehaviour(Behaviour behaviour);
    /// Replies to audio transcriptions, one per request in order (a `statusCode(200, json)` sends
    /// the JSON as it stands); when the queue is empty the default answers ({"text":""} unless set).
    void queueTranscription(Behaviour behaviour);
    void setDefaultTranscription(Behaviour behaviour);

    std::vector<RecordedRequest> requests() const;
    /// The system and user messages of every chat completion received, in order.
    std::vector<std::pair<std::string, std::string>> chatMessages() const;

    /// A deterministic 8-dimension vector for `text` (letter counts folded into 8 buckets).
    static std::vector<float> stubEmbedding(const std::string& text);

private:
    void acceptLoop();
    void serve(std::shared_ptr<void> socket);
    Behaviour nextBehaviour(const std::string& method, const std::string& target);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
    std::string m_basePath;
    std::uint16_t m_port = 0;

    mutable std::mutex m_mutex;
    std::condition_variable m_stopped;
    bool m_stopping = false;
    std::vector<std::string> m_models{"stub-model"};
    std::unique_ptr<Behaviour> m_modelsBehaviour;
    std::deque<Behaviour> m_chatQueue;
    Behaviour m_defaultChat = Behaviour::reply("");
    std::unique_ptr<Behaviour> m_embeddingsBehaviour;
    std::deque<Behaviour> m_transcriptionQueue;
    Behaviour m_defaultTranscription = Behaviour::statusCode(200, R"({"text":""})");
    std::vector<RecordedRequest> m_requests;
    std::vector<std::thread> m_connections;
    std::thread m_acceptor;
};

} // namespace quillon::testing
