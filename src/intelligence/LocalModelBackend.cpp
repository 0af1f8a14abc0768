#include "intelligence/LocalModelBackend.h"

#include "intelligence/HttpExchange.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace quillon::intelligence {

using nlohmann::json;
using orvane::IntelligenceError;
using orvane::IntelligenceReadiness;
using orvane::IntelligenceUnavailableReason;

namespace {

constexpr std::chrono::milliseconds probeReplyLimit{5000};

/// The server's own error text, for llama-server's {"error":{"message":…}} and Ollama's {"error":"…"}.
std::string serverMessage(const std::string& body) {
    json parsed = json::parse(body, nullptr, false);
    if (parsed.is_object() && parsed.contains("error")) {
        const json& error = parsed["error"];
        if (error.is_string())
            return error.get<std::string>();
        if (error.is_object() && error.contains("message") && error["message"].is_string())
            return error["message"].get<std::string>();
    }
    return {};
}

std::vector<std::string> modelIdentifiers(const std::string& body) {
    json parsed = json::parse(body, nullptr, false);
    std::vector<std::string> names;
    if (!parsed.is_object() || !parsed.contains("data") || !parsed["data"].is_array())
        return names;
    for (const json& entry : parsed["data"])
        if (entry.is_object() && entry.contains("id") && entry["id"].is_string())
            names.push_back(entry["id"].get<std::string>());
    return names;
}

} // namespace

LocalModelBackend::LocalModelBackend(LocalModelSettings settings, orvane::IntelligenceBackendKind kind)
    : m_settings(std::move(settings)), m_kind(kind), m_endpoint(LocalModelEndpoint::parse(m_settings.endpoint)),
      m_resolvedModel(m_settings.model) {}

std::string LocalModelBackend::unreachableSentence() const {
    return fmt::format("Quillon could not reach the local model server at {}.", m_settings.endpoint);
}

IntelligenceReadiness LocalModelBackend::readiness() const {
    if (!m_endpoint)
        return IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::other(fmt::format(
            "Quillon cannot use the model server address {}: it must be an http:// address.", m_settings.endpoint)));
    HttpReply reply;
    try {
        reply = sendHttpExchange(*m_endpoint, {"GET",
                                               m_endpoint->target("/models"),
                                               {},
                                               m_settings.connectTimeout,
                                               std::min(m_settings.replyTimeout, probeReplyLimit)});
    } catch (const HttpFailure&) {
        return IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::other(unreachableSentence()));
    }
    if (reply.status == 503)
        return IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::modelNotReady());
    if (reply.status != 200)
        return IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::other(fmt::format(
            "The local model server at {} answered with HTTP status {}.", m_settings.endpoint, reply.status)));
    if (m_settings.model.empty() && modelIdentifiers(reply.body).empty())
        return IntelligenceReadiness::unavailable(IntelligenceUnavailableReason::other(
            fmt::format("The local model server at {} lists no model to use.", m_settings.endpoint)));
    return IntelligenceReadiness::ready();
}

std::vector<std::string> LocalModelBackend::listModels() const {
    if (!m_endpoint)
        throw IntelligenceError::backendFailed(
            fmt::format("The model server address {} is not an http:// address.", m_settings.endpoint));
    HttpReply reply;
    try {
        reply = sendHttpExchange(*m_endpoint, {"GET",
                                               m_endpoint->target("/models"),
                                               {},
                                               m_settings.connectTimeout,
                                               std::min(m_settings.replyTimeout, probeReplyLimit)});
    } catch (const HttpFailure& failure) {
        throw IntelligenceError::backendFailed(unreachableSentence() + " (" + failure.what() + ")");
    }
    if (reply.status != 200)
        throw IntelligenceError::backendFailed(fmt::format("The local model server at {} answered with HTTP status {}.",
                                                           m_settings.endpoint, reply.status));
    return modelIdentifiers(reply.body);
}

std::string LocalModelBackend::modelName() {
    {
        std::lock_guard lock(m_mutex);
        if (!m_resolvedModel.empty())
            return m_resolvedModel;
    }
    std::vector<std::string> models = listModels();
    if (models.empty())
        throw IntelligenceError::backendFailed(
            fmt::format("The local model server at {} lists no model to use.", m_settings.endpoint));
    std::lock_guard lock(m_mutex);
    m_resolvedModel = models.front();
    return m_resolvedModel;
}

std::string LocalModelBackend::postJson(const std::string& route, const std::string& body) {
    if (!m_endpoint)
        throw IntelligenceError::backendFailed(
            fmt::format("The model server address {} is not an http:// address.", m_settings.endpoint));
    HttpReply reply;
    try {
        reply = sendHttpExchange(
            *m_endpoint, {"POST", m_endpoint->target(route), body, m_settings.connectTimeout, m_settings.replyTimeout});
    } catch (const HttpFailure& failure) {
        switch (failure.kind()) {
        case HttpFailure::Case::unreachable:
            throw IntelligenceError::backendFailed(unreachableSentence());
        case HttpFailure::Case::timedOut:
            throw IntelligenceError::backendFailed(
                fmt::format("The local model server at {} did not answer within {} seconds.", m_settings.endpoint,
                            std::chrono::duration<double>(m_settings.replyTimeout).count()));
        case HttpFailure::Case::dropped:
            throw IntelligenceError::backendFailed(fmt::format(
                "The local model server at {} closed the connection without answering.", m_settings.endpoint));
        } // no default case, so the compiler can warn about missing cases
    }
    if (reply.status != 200) {
        std::string detail = serverMessage(reply.body);
        throw IntelligenceError::backendFailed(
            fmt::format("The local model server at {} answered with HTTP status {}{}{}.", m_settings.endpoint,
                        reply.status, detail.empty() ? "" : ": ", detail));
    }
    return reply.body;
}

orvane::IntelligenceResponse LocalModelBackend::respond(const orvane::IntelligenceRequest& request) {
    json body = {{"model", modelName()},
                 {"messages", json::array({{{"role", "system"}, {"content", request.instructions}},
                                           {{"role", "user"}, {"content", request.prompt}}})},
                 {"stream", false}};
    json reply = json::parse(postJson("/chat/completions", body.dump()), nullptr, false);
    const json* content = nullptr;
    if (reply.is_object() && reply.contains("choices") && reply["choices"].is_array() && !reply["choices"].empty()) {
        const json& choice = reply["choices"][0];
        if (choice.is_object() && choice.contains("message") && choice["message"].is_object() &&
            choice["message"].contains("content"))
            content = &choice["message"]["content"];
    }
    if (!content || !content->is_string())
        throw IntelligenceError::backendFailed(
            fmt::format("The local model server at {} sent a reply without message text.", m_settings.endpoint));
    return {content->get<std::string>(), m_kind};
}

std::vector<std::vector<float>> LocalModelBackend::embed(const std::vector<std::string>& texts) {
    if (texts.empty())
        return {};
    json body = {{"model", modelName()}, {"input", texts}};
    json reply = json::parse(postJson("/embeddings", body.dump()), nullptr, false);
    if (!reply.is_object() || !reply.contains("data") || !reply["data"].is_array() ||
        reply["data"].size() != texts.size())
        throw IntelligenceError::backendFailed(
            fmt::format("The local model server at {} sent embeddings Quillon could not read.", m_settings.endpoint));
    std::vector<std::vector<float>> vectors(texts.size());
    std::size_t position = 0;
    for (const json& entry : reply["data"]) {
        // Servers may return the items out of order; "index" says which input each belongs to.
        std::size_t index = position++;
        if (entry.contains("index") && entry["index"].is_number_unsigned())
            index = entry["index"].get<std::size_t>();
        if (index >= texts.size() || !entry.contains("embedding") || !entry["embedding"].is_array())
            throw IntelligenceError::backendFailed(fmt::format(
                "The local model server at {} sent embeddings Quillon could not read.", m_settings.endpoint));
        for (const json& number : entry["embedding"]) {
            if (!number.is_number())
                throw IntelligenceError::backendFailed(fmt::format(
                    "The local model server at {} sent embeddings Quillon could not read.", m_settings.endpoint));
            vectors[index].push_back(number.get<float>());
        }
    }
    return vectors;
}

} // namespace quillon::intelligence
