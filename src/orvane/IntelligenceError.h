#pragma once

#include "orvane/IntelligenceUnavailableReason.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace orvane {

/// Thrown by the router, the backends and the features' `generate`. Inside `run` every one of
/// these turns into the feature's fallback, so none is ever shown to the user.
class IntelligenceError : public std::runtime_error {
public:
    enum class Case { noPermittedBackend, malformedResponse, backendFailed };

    /// The router found no usable backend among the permitted kinds.
    static IntelligenceError noPermittedBackend(IntelligenceUnavailableReason reason);
    /// A feature could not parse or validate the model's reply; `text` says what was wrong.
    static IntelligenceError malformedResponse(std::string text);
    /// The model call itself failed; `text` is the failure's own description.
    static IntelligenceError backendFailed(std::string text);

    Case kind() const { return m_case; }
    /// The reason of `noPermittedBackend`; absent otherwise.
    const std::optional<IntelligenceUnavailableReason>& reason() const { return m_reason; }
    /// The text of `malformedResponse` and `backendFailed`; empty otherwise.
    const std::string& text() const { return m_text; }

    bool operator==(const IntelligenceError& other) const {
        return m_case == other.m_case && m_reason == other.m_reason && m_text == other.m_text;
    }

private:
    IntelligenceError(Case kind, std::optional<IntelligenceUnavailableReason> reason, std::string text);

    Case m_case;
    std::optional<IntelligenceUnavailableReason> m_reason;
    std::string m_text;
};

} // namespace orvane
