#pragma once

#include "intelligence/LocalModelEndpoint.h"
#include "intelligence/LocalModelSettings.h"
#include "orvane/IntelligenceBackendProviding.h"
#include "orvane/IntelligenceReadiness.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quillon::intelligence {

/// The on-device backend of this platform: a local server speaking the OpenAI-compatible
/// chat-completions API. Every call is one fresh single-turn request (system message = the
/// feature's instructions, user message = its prompt); nothing is kept between calls except the
/// name of the model the server listed first. Safe to use from several threads.
class LocalModelBackend final : public orvane::IntelligenceBackendProviding {
public:
    explicit LocalModelBackend(LocalModelSettings settings,
                               orvane::IntelligenceBackendKind kind = orvane::IntelligenceBackendKind::onDevice);

    orvane::IntelligenceBackendKind kind() const override { return m_kind; }
    /// Throws IntelligenceError::backendFailed naming the endpoint when the server does not answer
    /// in time, drops the connection, answers with an error status or with no message content.
    orvane::IntelligenceResponse respond(const orvane::IntelligenceRequest& request) override;

    /// Asks the server which models it serves: not answering → `other` naming the endpoint;
    /// 503 (the model is still loading) → `modelNotReady`; a list → `ready`.
    orvane::IntelligenceReadiness readiness() const;

    /// The models the server lists, in its order. Throws IntelligenceError::backendFailed.
    std::vector<std::string> listModels() const;

    /// One vector per text from the server's embeddings route, in the order given. Throws
    /// IntelligenceError::backendFailed.
    std::vector<std::vector<float>> embed(const std::vector<std::string>& texts);

    const LocalModelSettings& settings() const { return m_settings; }

private:
    std::string modelName();
    std::string unreachableSentence() const;
    std::string postJson(const std::string& route, const std::string& body);

    LocalModelSettings m_settings;
    orvane::IntelligenceBackendKind m_kind;
    std::optional<LocalModelEndpoint> m_endpoint;
    mutable std::mutex m_mutex;
    std::string m_resolvedModel;
};

} // namespace quillon::intelligence
